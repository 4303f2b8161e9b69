// The three kinds of page that every benchmark works on, as 8-bit lines (0 full ink, 255 paper). What they cost differs
// widely: how many bytes equal their left neighbour decides the work of run-length coding.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Pages
{
    enum class Kind
    {
        Flat,  ///< text and tints: about 97 % of the bytes equal their left neighbour
        Photo, ///< a gradient with grain: about 14 %
        Noise  ///< uniformly random bytes: 0.4 %
    };

    const char* Name(Kind kind);

    /// `height` lines of `width` bytes, one after the other. The same arguments give the same page.
    std::vector<std::uint8_t> Make(Kind kind, std::size_t width, std::size_t height);

    /// Fraction of the bytes that equal their left neighbour, to be printed beside figures.
    double EqualNeighbours(const std::vector<std::uint8_t>& page, std::size_t width);
}
