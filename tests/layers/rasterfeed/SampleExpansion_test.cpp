#include "rasterfeed/SampleExpansion.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace
{
    /// `width` samples of `row` expanded into exactly as many bytes of their own.
    std::vector<int> Expand(SampleExpansion expansion, const std::vector<unsigned char>& row, std::uint32_t width)
    {
        const std::unique_ptr<unsigned char[]> exactRow(new unsigned char[row.size()]);
        std::memcpy(exactRow.get(), row.data(), row.size());
        const std::unique_ptr<unsigned char[]> line(new unsigned char[width]);
        expansion.Expand(exactRow.get(), line.get());
        return std::vector<int>(line.get(), line.get() + width);
    }
}

TEST(SampleExpansion, SixteenBitsRoundToTheNearest)
{
    std::vector<unsigned char> row(65536 * 2);
    for (std::uint32_t value = 0; value < 65536; ++value)
    {
        const auto sample = static_cast<std::uint16_t>(value);
        std::memcpy(&row[value * 2], &sample, 2);
    }
    const std::vector<int> bytes = Expand(SampleExpansion(16, false, false, 65536), row, 65536);
    const std::vector<int> inverted = Expand(SampleExpansion(16, true, false, 65536), row, 65536);
    for (std::uint32_t value = 0; value < 65536; ++value)
    {
        ASSERT_EQ(bytes[value], std::lround(value / 257.0)) << value;
        ASSERT_EQ(inverted[value], 255 - std::lround(value / 257.0)) << value;
    }
}

TEST(SampleExpansion, RowsMayEndInsideAByte)
{
    EXPECT_EQ(Expand({1, false, false, 3}, {0xA0}, 3), (std::vector<int>{255, 0, 255}));
    EXPECT_EQ(
        Expand({1, true, false, 9}, {0x00, 0x80}, 9), (std::vector<int>{255, 255, 255, 255, 255, 255, 255, 255, 0}));
    EXPECT_EQ(Expand({2, false, false, 5}, {0x1B, 0x40}, 5), (std::vector<int>{0, 85, 170, 255, 85}));
    EXPECT_EQ(Expand({4, false, false, 3}, {0x0F, 0x70}, 3), (std::vector<int>{0, 255, 119}));
    EXPECT_EQ(Expand({4, true, true, 3}, {0x0F, 0x70}, 3), (std::vector<int>{136, 0, 255}));
    EXPECT_EQ(Expand({8, true, true, 3}, {1, 2, 3}, 3), (std::vector<int>{252, 253, 254}));
}
