// Plain code, compiled once for every kind of machine: what differs is whether it counts the bits of a word in one
// instruction (twenty times as fast, which is half of a plate's time).
#include "rasterfeed/BilevelCount.h"

#include <cstring>

#include <endian.h>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "rasterfeed/BilevelCount.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace RasterFeed
{
    namespace
    {
        namespace HWY_NAMESPACE
        {
            HWY_INLINE std::uint64_t LoadWord(const unsigned char* from)
            {
                std::uint64_t word;
                std::memcpy(&word, from, sizeof word);
                return word;
            }

            void CountRow(
                const unsigned char* row, std::size_t words, std::uint32_t* before, const BilevelEdge* edges,
                std::size_t count, std::uint64_t* ones)
            {
                std::uint32_t sum = 0;
                for (std::size_t i = 0; i < words; ++i)
                {
                    before[i] = sum;
                    sum += static_cast<std::uint32_t>(__builtin_popcountll(LoadWord(row + i * 8)));
                }
                before[words] = sum;
                for (std::size_t i = 0; i < count; ++i)
                {
                    const BilevelEdge& edge = edges[i];
                    // The edge's own pixel in the lowest bit, and those before it above.
                    const std::uint64_t upTo = be64toh(LoadWord(row + std::size_t{edge.word} * 8)) >> (63 - edge.pixel);
                    const std::uint64_t whole =
                        before[edge.word] + static_cast<std::uint64_t>(__builtin_popcountll(upTo >> 1));
                    ones[i] = (whole << 16) + (upTo & 1) * edge.fraction;
                }
            }
        }
    }
}
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace RasterFeed
{
    namespace
    {
        HWY_EXPORT(CountRow);
    }

    void CountOnes(
        const unsigned char* row, std::size_t words, std::uint32_t* before, const BilevelEdge* edges, std::size_t count,
        std::uint64_t* ones)
    {
        HWY_DYNAMIC_DISPATCH(CountRow)(row, words, before, edges, count, ones);
    }
}
#endif
