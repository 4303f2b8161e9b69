// Resolutions through the two numbers and back.
#include "rasterfeed/WidthInUnits.h"

#include <gtest/gtest.h>

#include <cmath>

namespace RasterFeedTest
{
    using RasterFeed::ExpressWidth;
    using RasterFeed::ResolutionOf;
    namespace
    {
        double RoundTrip(std::uint32_t width, double resolution)
        {
            return ResolutionOf(width, ExpressWidth(width, resolution));
        }
    }

    TEST(WidthInUnits, UsualResolutionsComeBackToTheLastBit)
    {
        // Exactly, but where two divisions in double precision cannot: 2551 / (2551 / 254.0) is not 254.
        int exact = 0;
        int all = 0;
        for (const double resolution :
             {72.0, 50.8, 100.0, 144.0, 150.0, 254.0, 300.0, 1200.5, 2400.0, 2540.0, 299.9994})
        {
            for (std::uint32_t width = 1; width < 3000; ++width, ++all)
            {
                const double result = RoundTrip(width, resolution);
                ASSERT_LE(std::fabs(result - resolution), std::nextafter(resolution, 1e9) - resolution)
                    << width << " pixels at " << resolution;
                exact += result == resolution ? 1 : 0;
            }
        }
        EXPECT_GT(exact, all * 3 / 4);
        EXPECT_EQ(RoundTrip(2400, 300), 300);
    }

    TEST(WidthInUnits, AnyResolutionComesBackWithinAThousandMillionth)
    {
        // Ratios of 32-bit numbers, as a file states them, from a fixed sequence.
        std::uint64_t state = 1;
        const auto next = [&]
        { return static_cast<double>((state = state * 6364136223846793005u + 1442695040888963407u) >> 44); };
        for (int i = 0; i < 20000; ++i)
        {
            const double resolution = (next() + 1) / (next() / 1000 + 1);
            const auto width = static_cast<std::uint32_t>(next() / 8) + 1;
            if (width / resolution > 2e9 || width / resolution < 1e-3)
            {
                continue;
            }
            ASSERT_NEAR(RoundTrip(width, resolution) / resolution, 1, 1e-9) << width << " pixels at " << resolution;
        }
    }

    TEST(WidthInUnits, WhatTwoNumbersCannotSayIsSaidAsNearlyAsTheyCan)
    {
        EXPECT_EQ(RoundTrip(1, 4294967295.0), 2147483647.0);
        EXPECT_EQ(RoundTrip(1 << 30, 1 / 4294967295.0), (1 << 30) / 2147483647.0);
        EXPECT_GT(RoundTrip(1, 1e300), 0);
        EXPECT_GT(RoundTrip(1 << 30, 1e-300), 0);
        EXPECT_GT(RoundTrip(1 << 30, 5e-324), 0);
    }
}
