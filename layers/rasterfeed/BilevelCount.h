// Ones of a bilevel row up to given edges: the inner loop of the reduction of a plate. It stands apart because it runs for
// every row of an image of 10^9 pixels, and is as fast as the machine counts bits.
#pragma once

#include <cstddef>
#include <cstdint>

namespace RasterFeed
{
    /// A place in a bilevel row.
    struct BilevelEdge
    {
        std::uint32_t word;     ///< 64 pixels each
        std::uint16_t pixel;    ///< in the word, 0 to 63
        std::uint16_t fraction; ///< of that pixel, in 1/65536
    };

    /// Writes to `ones` for each of `count` edges the ones of the row before it, in 1/65536 of a pixel. `row` has `words` words of 64
    /// pixels, first pixel in the highest bit of the first byte, and one more word of zeros after them. `before` has space
    /// for words + 1 numbers. Never throws.
    void CountOnes(
        const unsigned char* row, std::size_t words, std::uint32_t* before, const BilevelEdge* edges, std::size_t count,
        std::uint64_t* ones);
}
