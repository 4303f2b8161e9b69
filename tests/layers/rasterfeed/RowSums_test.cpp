// The loops against plain ones, on every kind of machine that this one can be.
#include "rasterfeed/RowSums.h"
#include "tests/support/KernelTargets.h"

#include <memory>
#include <random>
#include <vector>

namespace RasterFeedTest
{
    class RowSums : public TestSupport::KernelTest
    {
    };
    INSTANTIATE_TEST_SUITE_P(
        , RowSums, testing::ValuesIn(TestSupport::TargetsOfThisMachine()), TestSupport::TargetName);

    TEST_P(RowSums, OnesAreThoseBeforeEveryEdge)
    {
        std::mt19937 random(1);
        for (std::size_t words = 0; words < 10; ++words)
        {
            // Exactly as large as it must be, with every edge that there can be, at a fraction of its own.
            const std::unique_ptr<std::uint64_t[]> rowWords(new std::uint64_t[words + 1]());
            const std::uint64_t masks[] = {random() * 0x100000001u, ~std::uint64_t{0}, random() * 0x300000007u};
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
                const auto* const mask = reinterpret_cast<const unsigned char*>(masks) + x / 8 % sizeof masks;
                const std::uint64_t pixel = (row[x / 8] & *mask) >> (7 - x % 8) & 1;
                edges.push_back({static_cast<std::uint32_t>(x / 64), static_cast<std::uint16_t>(x % 64), fraction});
                expected.push_back(sum * 65536 + pixel * fraction);
                sum += pixel;
            }
            std::vector<std::uint32_t> before(words + 1);
            std::vector<std::uint64_t> ones(edges.size());
            RasterFeed::CountOnes(
                rowWords.get(), words, masks, std::size(masks), before.data(), edges.data(), edges.size(), ones.data());
            EXPECT_EQ(ones, expected) << words << " words";
        }
    }

    TEST_P(RowSums, SumsAreThePlainOnesAtEveryLengthAndPlace)
    {
        std::mt19937 random(1);
        for (std::size_t count = 0; count < 300; ++count)
        {
            // Exactly as large as they must be, not aligned for a vector.
            const std::size_t shift = count % 17;
            const std::size_t size = shift + count;
            const std::unique_ptr<unsigned char[]> bytes(new unsigned char[size]);
            const std::unique_ptr<std::uint16_t[]> sums(new std::uint16_t[size]);
            const std::unique_ptr<std::uint32_t[]> weighted(new std::uint32_t[size]);
            const std::unique_ptr<std::uint64_t[]> low(new std::uint64_t[size]);
            const std::unique_ptr<std::uint64_t[]> carry(new std::uint64_t[size]);
            const std::unique_ptr<std::uint64_t[]> third(new std::uint64_t[size]);
            std::vector<std::uint64_t> expected;
            const auto weight = static_cast<std::uint32_t>(random() % 65536);
            for (std::size_t i = shift; i < size; ++i)
            {
                bytes[i] = static_cast<unsigned char>(random());
                sums[i] = static_cast<std::uint16_t>(random());
                weighted[i] = static_cast<std::uint32_t>(random());
                low[i] = std::uint64_t{random()} << 32 | random();
                carry[i] = std::uint64_t{random()} << 32 | random();
                third[i] = std::uint64_t{random()} << 32 | random();
                expected.push_back((sums[i] + bytes[i]) & 0xffffu);
                expected.push_back((weighted[i] + bytes[i] * weight) & 0xffffffffu);
                expected.push_back(low[i] ^ carry[i] ^ third[i]);
                expected.push_back((low[i] & carry[i]) | (low[i] & third[i]) | (carry[i] & third[i]));
            }
            RasterFeed::AddBytes(sums.get() + shift, bytes.get() + shift, count);
            RasterFeed::AddWeightedBytes(weighted.get() + shift, bytes.get() + shift, weight, count);
            RasterFeed::AddBits(low.get() + shift, carry.get() + shift, third.get() + shift, count);
            std::vector<std::uint64_t> found;
            for (std::size_t i = shift; i < size; ++i)
            {
                found.insert(found.end(), {sums[i], weighted[i], low[i], carry[i]});
            }
            ASSERT_EQ(found, expected) << count;
        }
    }
}
