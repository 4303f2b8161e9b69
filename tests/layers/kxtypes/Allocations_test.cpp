// Every allocation of the library made to fail: nothing is half made, and the next attempt finds what it needs.
#include "tests/support/Allocations.h"

#include <kxtypes.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <new>
#include <string>

namespace KxTypesTest
{
    namespace
    {
        constexpr char Long[] = "a text that is too long for a string to hold in itself";

        /// Runs `action` with its first allocation failing, then its second, and so on until none fails. What it throws has to
        /// be std::bad_alloc; `check` looks at what is left then.
        template <class Action>
        void FailEach(
            Action action, const std::function<void()>& check = [] {})
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
                    check();
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
        FailEach([&] { array.Append(value); }, [&] { EXPECT_EQ(array.Count(), 1u); });
        FailEach(
            [&]
            {
                dict.Set("key", other);
                dict.Set(Long, other);
            },
            [&]
            {
                EXPECT_FALSE(dict.HasKey(Long));
                EXPECT_NE(dict.At("key").KX_Cast("KX_TObject"), nullptr);
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
