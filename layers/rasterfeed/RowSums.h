// The inner loops of the reduction, over rows as they are stored. They stand apart because they see every row of an image of
// 10^9 pixels, and are compiled once for every kind of machine.
#pragma once

#include <cstddef>
#include <cstdint>

namespace RasterFeed
{
    /// A place in a bilevel row.
    struct BilevelEdge
    {
        std::uint32_t word;     ///< 64 bits each
        std::uint16_t bit;      ///< in the word, 0 to 63: the edge's pixel
        std::uint16_t fraction; ///< of that pixel, in 1/65536
    };

    /// Adds for each bit of `words` words the bits of `sum`, `carry` and `third`: the low bit of the result goes to `sum`, the
    /// high one to `carry`. No two may overlap. Never throws.
    void AddBits(std::uint64_t* sum, std::uint64_t* carry, const std::uint64_t* third, std::size_t words);

    /// Writes to `ones` for each of `count` edges the ones of the row before it that `masks` leaves, in 1/65536 of a pixel.
    /// `row` has `words` words of 64 bits, the first one in the highest bit of the first byte, and one more word after them.
    /// The `period` masks, laid out likewise, are for a word each, over and over. `before` has space for words + 1 numbers.
    /// Never throws.
    void CountOnes(
        const std::uint64_t* row, std::size_t words, const std::uint64_t* masks, std::size_t period,
        std::uint32_t* before, const BilevelEdge* edges, std::size_t count, std::uint64_t* ones);

    /// Adds `count` bytes to as many sums, which may not overlap them and wrap around above 65535. Never throws.
    void AddBytes(std::uint16_t* sums, const unsigned char* bytes, std::size_t count);

    /// The same of each byte times `weight`, into sums that wrap around above 2^32 - 1.
    void AddWeightedBytes(std::uint32_t* sums, const unsigned char* bytes, std::uint32_t weight, std::size_t count);
}
