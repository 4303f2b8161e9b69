// Rounding, where whole numbers could be off for a few values of many. The other depths are proved by whole files.
#include "rasterfeed/SampleExpansion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

namespace RasterFeedTest
{
    using RasterFeed::SampleExpansion;
    TEST(SampleExpansion, SixteenBitsRoundToTheNearest)
    {
        for (std::uint32_t value = 0; value < 65536; ++value)
        {
            unsigned char row[2];
            const auto sample = static_cast<std::uint16_t>(value);
            std::memcpy(row, &sample, sizeof sample);
            unsigned char line[1];
            SampleExpansion(16, false, false, 1).Expand(row, line);
            ASSERT_EQ(line[0], std::lround(value / 257.0)) << value;
            SampleExpansion(16, true, false, 1).Expand(row, line);
            ASSERT_EQ(line[0], 255 - std::lround(value / 257.0)) << value;
        }
    }
}
