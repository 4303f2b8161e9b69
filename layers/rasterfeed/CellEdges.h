// Where the cells of a reduction begin and end, in one direction. It stands apart because every edge has to be exactly where
// its definition puts it, from whichever end the pixels come.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace RasterFeed
{
    /// Units of an edge in one pixel.
    constexpr unsigned EdgeBits = 16;
    constexpr std::int64_t EdgeUnits = std::int64_t{1} << EdgeBits;

    /// The place in an image of `pixels` pixels that is nearest to `edge`.
    inline std::int64_t InsideImage(std::int64_t edge, std::uint32_t pixels)
    {
        return std::clamp<std::int64_t>(edge, 0, pixels * EdgeUnits);
    }

    /// The edges of `cells` cells, one more than those, ascending; from the first pixel's near edge, in 1/65536 of a pixel.
    /// Cell i reaches from floor(i x pixelsPerCell x 65536 + 1/2) to the same of i + 1. `isFlipped`: the cells are counted from
    /// the far edge of the last of `pixels` pixels, and the list begins with the last cell; edges outside the image are
    /// below 0 then, and beyond its end otherwise. More than 2^58 units are taken for 2^58.
    std::vector<std::int64_t>
    CellEdges(std::uint32_t pixels, std::uint32_t cells, double pixelsPerCell, bool isFlipped);
}
