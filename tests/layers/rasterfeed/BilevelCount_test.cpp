// Counting by words against counting by bits, on every kind of machine that this one can be.
#include "rasterfeed/BilevelCount.h"

#include <gtest/gtest.h>
#include <hwy/highway.h>
#include <hwy/targets.h>

#include <memory>
#include <random>
#include <vector>

namespace RasterFeedTest
{
    TEST(BilevelCount, EveryTargetEqualsThePlainLoopAtEveryEdge)
    {
        std::mt19937 random(1);
        for (std::int64_t left = hwy::SupportedTargets(); left != 0; left &= left - 1)
        {
            hwy::SetSupportedTargetsForTest((left & -left) | HWY_STATIC_TARGET);
            hwy::GetChosenTarget().Update(hwy::SupportedTargets());
            for (std::size_t words = 0; words < 10; ++words)
            {
                // Exactly as large as it must be, with every edge that there can be, at a fraction of its own.
                const std::unique_ptr<std::uint64_t[]> rowWords(new std::uint64_t[words + 1]());
                auto* const row = reinterpret_cast<unsigned char*>(rowWords.get());
                std::vector<RasterFeed::BilevelEdge> edges;
                std::vector<std::uint64_t> expected;
                std::uint64_t sum = 0;
                for (std::size_t x = 0; x <= words * 64; ++x)
                {
                    if (x % 8 == 0 && x < words * 64)
                    {
                        row[x / 8] = static_cast<unsigned char>(random());
                    }
                    const auto fraction = static_cast<std::uint16_t>(random());
                    const std::uint64_t pixel = row[x / 8] >> (7 - x % 8) & 1;
                    edges.push_back({static_cast<std::uint32_t>(x / 64), static_cast<std::uint16_t>(x % 64), fraction});
                    expected.push_back(sum * 65536 + pixel * fraction);
                    sum += pixel;
                }
                std::vector<std::uint32_t> before(words + 1);
                std::vector<std::uint64_t> ones(edges.size());
                RasterFeed::CountOnes(rowWords.get(), words, before.data(), edges.data(), edges.size(), ones.data());
                EXPECT_EQ(ones, expected) << hwy::TargetName(left & -left) << ", " << words << " words";
            }
        }
        hwy::SetSupportedTargetsForTest(0);
        hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    }
}
