// Texts of numbers, against printf in the C locale where that says what they are.
#include "frontend/ValueToText.h"

#include <kxtypes.h>

#include <gtest/gtest.h>

#include <limits>

namespace SheetvaneTest
{
    using Sheetvane::ValueToText;

    TEST(ValueToText, FloatsAreAsPrintfGivesThem)
    {
        const double limit = std::numeric_limits<double>::max();
        const double infinity = std::numeric_limits<double>::infinity();
        const double nan = std::numeric_limits<double>::quiet_NaN();
        for (const double number :
             {0.5, 1e6, -0.0, 0.0000005, limit, -limit, 1e308, 1.0 / 3, 2.5e-6, 3.5e-6, 123456.7890125, infinity,
              -infinity, nan})
        {
            char expected[400];
            std::snprintf(expected, sizeof expected, "%f", number);
            EXPECT_EQ(ValueToText(KX_TDouble(number)), expected);
        }
        EXPECT_EQ(ValueToText(KX_TFloat(0.1f)), "0.100000");
    }

    TEST(ValueToText, IntegersAreDecimal)
    {
        EXPECT_EQ(ValueToText(KX_TInt32(-5)), "-5");
        EXPECT_EQ(ValueToText(KX_TInt32(std::numeric_limits<std::int32_t>::min())), "-2147483648");
        EXPECT_EQ(ValueToText(KX_TUInt32(4294967295u)), "4294967295");
    }

    TEST(ValueToText, AnythingElseHasNoText)
    {
        EXPECT_EQ(ValueToText(KX_TString("1")), "");
        EXPECT_EQ(ValueToText(KX_TBool(true)), "");
        EXPECT_EQ(ValueToText(KX_TAny()), "");

        struct Broken : KX_TInt32
        {
            const void* KX_Cast(const char*) const override { throw 1; }
        };
        EXPECT_EQ(ValueToText(Broken()), "");
    }
}
