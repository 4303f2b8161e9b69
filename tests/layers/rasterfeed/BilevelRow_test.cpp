// The vectors against the plain loop, on every kind of them that this machine has.
#include "rasterfeed/BilevelRow.h"

#include <gtest/gtest.h>
#include <hwy/highway.h>
#include <hwy/targets.h>

#include <memory>
#include <random>

namespace RasterFeedTest
{
    using RasterFeed::ExpandBilevelRow;
    TEST(BilevelRow, EveryTargetEqualsThePlainLoopAtEveryLengthAndPlace)
    {
        std::mt19937 random(1);
        for (std::int64_t left = hwy::SupportedTargets(); left != 0; left &= left - 1)
        {
            hwy::SetSupportedTargetsForTest((left & -left) | HWY_STATIC_TARGET);
            hwy::GetChosenTarget().Update(hwy::SupportedTargets());
            for (std::size_t samples = 0; samples < 700; ++samples)
            {
                // Exactly as large as they must be, not aligned for a vector.
                const std::size_t rowBytes = (samples + 7) / 8;
                const std::size_t shift = samples % 17;
                const std::unique_ptr<unsigned char[]> row(new unsigned char[shift + rowBytes]);
                const std::unique_ptr<unsigned char[]> line(new unsigned char[shift + samples]);
                for (std::size_t i = 0; i < rowBytes; ++i)
                {
                    row[shift + i] = static_cast<unsigned char>(random());
                }
                for (const unsigned char flip : {static_cast<unsigned char>(0), static_cast<unsigned char>(255)})
                {
                    ExpandBilevelRow(row.get() + shift, samples, flip, line.get() + shift);
                    for (std::size_t i = 0; i < samples; ++i)
                    {
                        const bool isOne = (row[shift + i / 8] >> (7 - i % 8) & 1) != 0;
                        ASSERT_EQ(line[shift + i], isOne ? 255 - flip : flip)
                            << hwy::TargetName(left & -left) << ", sample " << i << " of " << samples;
                    }
                }
            }
        }
        hwy::SetSupportedTargetsForTest(0);
        hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    }
}
