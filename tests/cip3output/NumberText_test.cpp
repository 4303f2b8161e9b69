// Numbers against the bytes that the format asks for, and against printf's %g.
#include "cip3output/NumberText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>

namespace CIP3OutputTest
{
    using RasterOutput::NumberText;

    TEST(NumberText, DecimalCoversItsWholeRange)
    {
        EXPECT_EQ(std::string_view(NumberText::Decimal(0)), "0");
        EXPECT_EQ(std::string_view(NumberText::Decimal(-7)), "-7");
        EXPECT_EQ(
            std::string_view(NumberText::Decimal(std::numeric_limits<std::int64_t>::min())), "-9223372036854775808");
    }

    TEST(NumberText, GeneralHasSixSignificantDigits)
    {
        const struct
        {
            double number;
            const char* text;
        } cases[] = {
            {72.0, "72"},
            {297.5, "297.5"},
            {841.8898, "841.89"},
            {1000000.0, "1e+06"},
            {0.00001234, "1.234e-05"},
            {999999.0, "999999"}, // largest exponent of fixed notation
            {999999.5, "1e+06"},  // rounding moves the exponent
            {0.0001, "0.0001"},   // smallest exponent of fixed notation
            {0.00009999994, "9.99999e-05"},
            {100000.0, "100000"}, // zeros before the point stay
            {1.5e300, "1.5e+300"},
            {-0.0, "-0"},
            {std::numeric_limits<double>::infinity(), "inf"},
            {5e-324, "4.94066e-324"},
        };
        for (const auto& c : cases)
        {
            EXPECT_EQ(std::string_view(NumberText::General(c.number)), c.text);
        }
    }

    TEST(NumberText, GeneralIsThatOfPrintf)
    {
        std::mt19937_64 random(1);
        for (int i = 0; i < 100000; ++i)
        {
            double number = 0;
            const std::uint64_t bits = random();
            std::memcpy(&number, &bits, sizeof number);
            if (i % 2 == 0)
            {
                number = std::ldexp(static_cast<double>(bits >> 40), static_cast<int>(bits % 40) - 30);
            }
            char expected[64];
            std::snprintf(expected, sizeof expected, "%g", number);
            ASSERT_EQ(std::string_view(NumberText::General(number)), expected);
        }
    }
}
