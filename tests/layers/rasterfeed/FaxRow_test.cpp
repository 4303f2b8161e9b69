// Rows of CCITT images from their runs, against setting pixel by pixel.
#include "rasterfeed/FaxRow.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace RasterFeedTest
{
    namespace
    {
        constexpr char Untouched = '\x5a';

        std::string Filled(std::vector<std::uint32_t> runs, std::uint32_t width)
        {
            std::string row(width / 8 + 9, Untouched);
            RasterFeed::FillFaxRow(
                reinterpret_cast<unsigned char*>(row.data()), runs.data(), runs.data() + runs.size(), width);
            return row;
        }

        std::string FilledByPixels(const std::vector<std::uint32_t>& runs, std::uint32_t width)
        {
            std::string row(width / 8 + 9, Untouched);
            std::fill_n(row.begin(), (width + 7) / 8, '\0');
            std::uint64_t pixel = 0;
            for (std::size_t i = 0; i < runs.size(); ++i)
            {
                const std::uint64_t end = std::min<std::uint64_t>(pixel + runs[i], width);
                for (; pixel < end; ++pixel)
                {
                    row[pixel / 8] = static_cast<char>(row[pixel / 8] | (i % 2 != 0 ? 0x80 >> pixel % 8 : 0));
                }
            }
            return row;
        }
    }

    TEST(FaxRow, RunsThatEndAboutEveryWordAndTheRowsEnd)
    {
        const std::uint32_t lengths[] = {0, 1, 7, 63, 64, 65, 128, 4294967295};
        for (const std::uint32_t width : {1U, 8U, 63U, 64U, 65U, 127U, 128U, 200U})
        {
            for (const std::uint32_t a : lengths)
            {
                for (const std::uint32_t b : lengths)
                {
                    for (const std::uint32_t c : lengths)
                    {
                        for (const std::vector<std::uint32_t>& runs :
                             {std::vector{a}, std::vector{a, b}, std::vector{a, b, c}, std::vector{a, b, c, a, b, c}})
                        {
                            ASSERT_EQ(Filled(runs, width), FilledByPixels(runs, width))
                                << width << ": " << a << ' ' << b << ' ' << c << " of " << runs.size();
                        }
                    }
                }
            }
        }
    }
}
