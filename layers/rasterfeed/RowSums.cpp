// Plain code: what differs from machine to machine is how wide the compiler's vectors are, and whether the bits of a word are
// counted in one instruction.
#include "rasterfeed/RowSums.h"

#include <endian.h>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "rasterfeed/RowSums.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace RasterFeed
{
    namespace
    {
        namespace HWY_NAMESPACE
        {
            void AddWords(
                std::uint64_t* __restrict sum, std::uint64_t* __restrict carry, const std::uint64_t* __restrict third,
                std::size_t words)
            {
                for (std::size_t i = 0; i < words; ++i)
                {
                    const std::uint64_t either = sum[i] ^ carry[i];
                    carry[i] = (sum[i] & carry[i]) | (either & third[i]);
                    sum[i] = either ^ third[i];
                }
            }

            void CountRow(
                const std::uint64_t* row, std::size_t words, const std::uint64_t* masks, std::size_t period,
                std::uint32_t* before, const BilevelEdge* edges, std::size_t count, std::uint64_t* ones)
            {
                std::uint32_t sum = 0;
                std::size_t mask = 0;
                for (std::size_t i = 0; i < words; ++i)
                {
                    before[i] = sum;
                    sum += static_cast<std::uint32_t>(__builtin_popcountll(row[i] & masks[mask]));
                    mask = mask + 1 == period ? 0 : mask + 1;
                }
                before[words] = sum;
                for (std::size_t i = 0; i < count; ++i)
                {
                    const BilevelEdge& edge = edges[i];
                    // The edge's own pixel in the lowest bit, and those before it above.
                    const std::uint64_t upTo = be64toh(row[edge.word] & masks[edge.word % period]) >> (63 - edge.bit);
                    const std::uint64_t whole =
                        before[edge.word] + static_cast<std::uint64_t>(__builtin_popcountll(upTo >> 1));
                    ones[i] = (whole << 16) + (upTo & 1) * edge.fraction;
                }
            }

            void AddRow(std::uint16_t* __restrict sums, const unsigned char* __restrict bytes, std::size_t count)
            {
                for (std::size_t i = 0; i < count; ++i)
                {
                    sums[i] = static_cast<std::uint16_t>(sums[i] + bytes[i]);
                }
            }

            void AddWeightedRow(
                std::uint32_t* __restrict sums, const unsigned char* __restrict bytes, std::uint32_t weight,
                std::size_t count)
            {
                for (std::size_t i = 0; i < count; ++i)
                {
                    sums[i] += bytes[i] * weight;
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
        HWY_EXPORT(AddWords);
        HWY_EXPORT(CountRow);
        HWY_EXPORT(AddRow);
        HWY_EXPORT(AddWeightedRow);
    }

    void AddBits(std::uint64_t* sum, std::uint64_t* carry, const std::uint64_t* third, std::size_t words)
    {
        HWY_DYNAMIC_DISPATCH(AddWords)(sum, carry, third, words);
    }

    void CountOnes(
        const std::uint64_t* row, std::size_t words, const std::uint64_t* masks, std::size_t period,
        std::uint32_t* before, const BilevelEdge* edges, std::size_t count, std::uint64_t* ones)
    {
        HWY_DYNAMIC_DISPATCH(CountRow)(row, words, masks, period, before, edges, count, ones);
    }

    void AddBytes(std::uint16_t* sums, const unsigned char* bytes, std::size_t count)
    {
        HWY_DYNAMIC_DISPATCH(AddRow)(sums, bytes, count);
    }

    void AddWeightedBytes(std::uint32_t* sums, const unsigned char* bytes, std::uint32_t weight, std::size_t count)
    {
        HWY_DYNAMIC_DISPATCH(AddWeightedRow)(sums, bytes, weight, count);
    }
}
#endif
