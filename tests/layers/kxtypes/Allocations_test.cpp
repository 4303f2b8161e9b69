// Every allocation of the library made to fail: nothing is half made, and the next attempt finds what it needs.
#include "tests/support/Allocations.h"

#include <kxtypes.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>

namespace KxTypesTest
{
    namespace
    {
        constexpr char Long[] = "a text that is too long for a string to hold in itself";

        /// Runs `action` with its first allocation failing, then its second, and so on until none fails. What it throws has to
        /// be std::bad_alloc.
        template <class Action>
        void FailEach(Action action)
        {
            long count = 0;
            for (bool failed = true; failed;)
            {
                TestSupport::FailOneAllocation(++count);
                try
                {
                    action();
                }
                catch (const std::bad_alloc&)
                {
                    // What is expected of a failed one.
                }
                failed = TestSupport::AllocationHasFailed();
                TestSupport::AllowAllocations();
            }
            EXPECT_GT(count, 1);
        }
    }

    // In a process of its own, as class objects are made once in each.
    TEST(ClassesDeathTest, InitialisationThatFailedSucceedsWhereMemoryIsBack)
    {
        const auto initialise = []
        {
            FailEach([] { __KX_INITIALIZATION_FUNCTION_kxtypes__(); });
            const bool whole = __KX_INITIALIZATION_FUNCTION_kxtypes__() &&
                               std::string(KX_TDict().ClassName()) == "KX_TDict" &&
                               KX_TList::KX_ClassObject()->Superclass() == KX_TArray::KX_ClassObject();
            std::_Exit(whole ? 0 : 1);
        };
        EXPECT_EXIT(initialise(), testing::ExitedWithCode(0), "^$");
    }

    TEST(Allocations, QueryOfAKnownClassTakesNone)
    {
        ASSERT_TRUE(__KX_INITIALIZATION_FUNCTION_kxtypes__());
        const KX_TString text(Long);
        TestSupport::AllowAllocations();
        const bool known = text.HasSuperclass("KX_TObject") && text.KX_Cast("KX_IPackable") != nullptr &&
                           KX_TClass::GetClassObject(false, "KX_EException", 0, nullptr, nullptr, nullptr) != nullptr;
        EXPECT_EQ(TestSupport::AllocationCount(), 0);
        EXPECT_TRUE(known);
    }

    TEST(Allocations, FailedChangeOfAContainerLeavesItAsItWas)
    {
        const KX_TString value(Long);
        KX_TArray array;
        array.Append(value);
        KX_TDict dict;
        dict.Set("key", value);
        const KX_TInt32 other(1);
        FailEach(
            [&]
            {
                const std::uint32_t count = array.Count();
                try
                {
                    array.Append(value);
                }
                catch (const std::bad_alloc&)
                {
                    EXPECT_EQ(array.Count(), count);
                    throw;
                }
            });
        FailEach(
            [&]
            {
                try
                {
                    dict.Set("key", other);
                    dict.Set(Long, other);
                }
                catch (const std::bad_alloc&)
                {
                    EXPECT_FALSE(dict.HasKey(Long));
                    EXPECT_NE(dict.At("key").KX_Cast("KX_TObject"), nullptr);
                    throw;
                }
            });
        EXPECT_STREQ(dict.At(Long).ClassName(), "KX_TInt32");
    }

    TEST(Allocations, FailedAssignmentLeavesWhatCanBeAssignedAnew)
    {
        KX_TArray source;
        source.Append(KX_TString(Long));
        source.Append(KX_TString(Long));
        const KX_EException failure((KX_TString(Long)));
        KX_TArray array;
        KX_EException copy;
        FailEach([&] { array = source; });
        FailEach([&] { copy = failure; });
        EXPECT_EQ(array.Count(), 2u);
        EXPECT_STREQ(copy.KX_Message().c_str(), Long);
    }
}
