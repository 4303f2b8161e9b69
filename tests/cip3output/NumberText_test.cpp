// Numbers against their limits, and against printf's %g.
#include "cip3output/NumberText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

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

    TEST(NumberText, GeneralIsThatOfPrintf)
    {
        // Largest and smallest exponent of fixed notation, and where rounding moves it; zeros before the point; the limits.
        std::vector<double> numbers = {999999.0,      999999.5, 0.0001,
                                       0.00009999994, 100000.0, 841.8898,
                                       -0.0,          5e-324,   std::numeric_limits<double>::infinity()};
        std::mt19937_64 random(1);
        for (int i = 0; i < 50000; ++i)
        {
            const std::uint64_t bits = random();
            double number = 0;
            std::memcpy(&number, &bits, sizeof number);
            numbers.push_back(number);
            numbers.push_back(std::ldexp(static_cast<double>(bits >> 40), static_cast<int>(bits % 40) - 30));
        }
        for (const double number : numbers)
        {
            char expected[64];
            std::snprintf(expected, sizeof expected, "%g", number);
            ASSERT_EQ(std::string_view(NumberText::General(number)), expected);
        }
    }
}
