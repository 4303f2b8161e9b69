// Arrays, lists and dictionaries.
#include <kxtypes.h>

#include <gtest/gtest.h>

namespace KxTypesTest
{
    using namespace std::string_literals;

    namespace
    {
        std::int32_t Int(const KX_TAny& value)
        {
            return *static_cast<const std::int32_t*>(value.DynamicCast("KX_TInt32", "file", 1));
        }

        /// Keys and values as a walk gives them: "a=1 b=2 ".
        std::string Walked(const KX_IIteratable& container)
        {
            std::string entries;
            for (KX_TConstIterator entry(container); !entry.IsDone(); entry.Next())
            {
                const auto* const key =
                    static_cast<const KX_TString*>(entry.Key().DynamicCast("KX_TString", "file", 1));
                entries.append(key->c_str(), key->Length());
                entries += '=' + std::to_string(Int(entry.Value())) + ' ';
            }
            return entries;
        }

        template <class Sequence>
        class Sequences : public testing::Test
        {
        };
        using SequenceClasses = testing::Types<KX_TArray, KX_TList>;
        TYPED_TEST_SUITE(Sequences, SequenceClasses, );
    }

    TYPED_TEST(Sequences, ElementsStandInTheOrderOfAppend)
    {
        TypeParam sequence;
        EXPECT_EQ(sequence.Count(), 0u);
        EXPECT_THROW(sequence.At(0), KX_EException);
        for (int number = 0; number < 100; ++number)
        {
            sequence.Append(KX_TInt32(number));
        }
        const TypeParam copy = sequence;
        sequence.Append(KX_TString("last"));
        EXPECT_EQ(copy.Count(), 100u);
        EXPECT_EQ(Int(copy.At(0)), 0);
        EXPECT_EQ(Int(copy.At(99)), 99);
        EXPECT_THROW(copy.At(100), KX_EException);
        EXPECT_STREQ(sequence.At(100).ClassName(), "KX_TString");
    }

    TEST(KX_TDict, WalkIsSortedByUnsignedBytesOfTheKeys)
    {
        KX_TDict dict;
        EXPECT_EQ(Walked(dict), "");
        dict.Set("b", KX_TInt32(1));
        dict.Set("\xC3\xA4", KX_TInt32(2));
        dict.Set("Zeta", KX_TInt32(3));
        dict.Set("Ze", KX_TInt32(4));
        dict.Set("b", KX_TInt32(5));
        EXPECT_EQ(Walked(dict), "Ze=4 Zeta=3 b=5 \xC3\xA4=2 ");
        dict.Set(KX_TString("b\0c", 3), KX_TInt32(6));
        EXPECT_EQ(Walked(dict), "Ze=4 Zeta=3 b=5 b\0c=6 \xC3\xA4=2 "s);
    }

    TEST(KX_TDict, EntriesAreFoundByKey)
    {
        KX_TDict dict;
        dict.Set("job", KX_TString("Brochure"));
        dict.Set("copies", KX_TInt32(1500));
        KX_TDict copy(dict, 0);
        copy.At("copies") = KX_TInt32(1);

        EXPECT_TRUE(dict.HasKey("job"));
        EXPECT_FALSE(dict.HasKey("jo"));
        EXPECT_EQ(Int(dict.At("copies")), 1500);
        EXPECT_EQ(Int(copy.At("copies")), 1);
        EXPECT_STREQ(dict.GetString("job")->c_str(), "Brochure");
        EXPECT_EQ(dict.GetString("sheet"), nullptr);
        EXPECT_THROW(dict.GetString("copies"), KX_EException);
        EXPECT_THROW(dict.At("sheet"), KX_EException);
        EXPECT_TRUE(dict.HasInterface("KX_IIteratable"));
    }
}
