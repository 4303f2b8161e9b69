// What an object says of its class, and what its casts point at.
#include <kxtypes.h>

#include <gtest/gtest.h>

#include <memory>

namespace KxTypesTest
{
    namespace
    {
        template <class Value>
        class ValueClass : public testing::Test
        {
        };
        using ValueClasses = testing::Types<
            KX_TString, KX_TURL, KX_TDouble, KX_TFloat, KX_TInt32, KX_TUInt32, KX_TBool, KX_TArray, KX_TList, KX_TDict,
            KX_EException>;
        TYPED_TEST_SUITE(ValueClass, ValueClasses, );

        template <class Number>
        Number NumberAt(const void* address)
        {
            return *static_cast<const Number*>(address);
        }
    }

    TYPED_TEST(ValueClass, AnAnyAnswersAsTheValueItHolds)
    {
        const KX_TAny any = TypeParam();
        const KX_TClass* const classObject = TypeParam::KX_ClassObject();
        EXPECT_STREQ(any.ClassName(), TypeParam::KX_ClassName());
        EXPECT_EQ(&any.ClassObject(), classObject);
        EXPECT_EQ(classObject->registered, 1);
        EXPECT_EQ(classObject->Size(), sizeof(TypeParam));
        EXPECT_TRUE(any.HasSuperclass(TypeParam::KX_ClassName()));
        EXPECT_TRUE(any.HasSuperclass("KX_TObject"));
        EXPECT_FALSE(any.HasSuperclass("KX_TAny"));
        EXPECT_FALSE(any.HasInterface("KX_TObject"));
        EXPECT_TRUE(any.HasInterface("KX_IInterface"));
        EXPECT_NE(any.KX_Cast(TypeParam::KX_ClassName()), nullptr);
        EXPECT_EQ(any.KX_Cast("KX_TNothing"), nullptr);
        EXPECT_EQ(any.KX_Cast(nullptr), nullptr);

        const std::unique_ptr<KX_TObject> made(classObject->New());
        EXPECT_STREQ(made->ClassName(), TypeParam::KX_ClassName());
        EXPECT_EQ(made->KX_Self(), dynamic_cast<void*>(made.get()));
    }

    TEST(KX_Numbers, ACastGivesThePlainNumber)
    {
        EXPECT_EQ(NumberAt<double>(KX_TAny(KX_TDouble(0.1)).KX_Cast("KX_TDouble")), 0.1);
        EXPECT_EQ(NumberAt<float>(KX_TAny(KX_TFloat(0.1f)).KX_Cast("KX_TFloat")), 0.1f);
        EXPECT_EQ(NumberAt<std::int32_t>(KX_TAny(KX_TInt32(INT32_MIN)).KX_Cast("KX_TInt32")), INT32_MIN);
        EXPECT_EQ(NumberAt<std::uint32_t>(KX_TAny(KX_TUInt32(UINT32_MAX)).KX_Cast("KX_TUInt32")), UINT32_MAX);
        EXPECT_EQ(NumberAt<bool>(KX_TAny(KX_TBool(true)).KX_Cast("KX_TBool")), true);
        EXPECT_EQ(KX_TInt32(1).KX_Cast("KX_TDouble"), nullptr);

        KX_TInt32 number(1);
        *static_cast<std::int32_t*>(number.DynamicCast("KX_TInt32", "file", 1)) = 2;
        EXPECT_EQ(number.Value(), 2);
    }

    TEST(KX_TObject, CheckedCastToAnotherClassThrowsWithTheCallersPlace)
    {
        const KX_TString text("text");
        const KX_IInterface& interface = text;
        EXPECT_EQ(text.DynamicCast("KX_TString", "caller", 7), &text);
        EXPECT_EQ(interface.DynamicCast("KX_TString", "caller", 7), &text);
        EXPECT_EQ(interface.DynamicCast("KX_IPackable", "caller", 7), static_cast<const KX_IPackable*>(&text));
        try
        {
            interface.DynamicCast("KX_TURL", "caller", 7);
            FAIL() << "nothing thrown";
        }
        catch (const KX_EException& failure)
        {
            EXPECT_STREQ(failure.KX_Message().c_str(), "A KX_TString is not a KX_TURL");
            EXPECT_STREQ(failure.KX_ExceptionFile(), "caller");
            EXPECT_EQ(failure.KX_ExceptionLine(), 7u);
        }
    }

    TEST(KX_TClass, OneClassObjectForAName)
    {
        KX_TClass* const first = KX_TClass::GetClassObject(false, "Plate", 8, nullptr, nullptr, nullptr);
        EXPECT_EQ(first->registered, 0);
        EXPECT_STREQ(first->name, "Plate");
        EXPECT_EQ(KX_TClass::GetClassObject(false, "Plate", 16, first, nullptr, nullptr), first);
        EXPECT_EQ(first->Size(), 8u);
        EXPECT_NE(KX_TClass::GetClassObject(false, "Plates", 8, nullptr, nullptr, nullptr), first);
    }

    TEST(KX_TAny, CopyIsAValueOfItsOwn)
    {
        KX_TAny any = KX_TInt32(1);
        const KX_TAny copy = any;
        *static_cast<std::int32_t*>(any.DynamicCast("KX_TInt32", "file", 1)) = 2;
        EXPECT_EQ(NumberAt<std::int32_t>(copy.KX_Cast("KX_TInt32")), 1);
        any = KX_TAny();
        EXPECT_STREQ(any.ClassName(), "KX_TAny");
        EXPECT_EQ(any.KX_Cast("KX_TAny"), &any);
        EXPECT_EQ(any.KX_Cast("KX_TInt32"), nullptr);
    }

    TEST(KX_TString, LengthKeepsZeroBytesAndTheTerminatorEndsElsewhere)
    {
        const char bytes[] = {'C', 'y', '\0', 'a', 'n', '\0'};
        const KX_TString whole(bytes, 5);
        EXPECT_EQ(whole.Length(), 5u);
        EXPECT_EQ(std::string(whole.c_str(), whole.Length() + 1), std::string(bytes, 6));
        EXPECT_STREQ(whole.c_str(), "Cy");
        EXPECT_EQ(KX_TString(bytes).Length(), 2u);
        EXPECT_EQ(KX_TString(bytes, 0).Length(), 0u);
        EXPECT_STREQ(KX_TString(nullptr).c_str(), "");
    }

    TEST(KX_TString, MovesItsBytesAsAPackable)
    {
        KX_TString source("Cy\0an", 5);
        KX_TString target("Black");
        EXPECT_FALSE(source.KX_IsIdent(target));
        source.KX_Move(target.KX_Self());
        EXPECT_TRUE(source.KX_IsIdent(target));
        EXPECT_EQ(target.Length(), 5u);
        const std::unique_ptr<KX_IPackable> clone(source.KX_Clone());
        EXPECT_TRUE(clone->KX_IsIdent(source));
        EXPECT_EQ(clone->KX_PackTypeID(), 0xF69E9640u);
    }

    TEST(KX_TURL, OnlyALocalLocationHasALocalName)
    {
        EXPECT_STREQ(KX_TURL(KX_TString("a/../b c.tif")).LocalName().c_str(), "a/../b c.tif");
        EXPECT_STREQ(KX_TURL(KX_TString("")).LocalName().c_str(), "");
        EXPECT_THROW(KX_TURL().LocalName(), KX_EException);
    }
}
