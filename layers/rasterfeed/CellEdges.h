// Where the cells of a reduction begin and end, in one direction. They stand apart because every edge has to be exactly where
// its definition puts it, from whichever end the pixels come.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

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

    /// The edges of a row of cells, ascending: from the first pixel's near edge, in 1/65536 of a pixel. More than 2^58 units are
    /// taken for 2^58.
    class CellEdges
    {
    public:
        /// Cell i of `cells` reaches from floor(i x pixelsPerCell x 65536 + 1/2) to the same of i + 1. `isFlipped`: the cells are
        /// counted from the far edge of the last of `pixels` pixels, and the last cell comes first; edges outside the image
        /// are below 0 then, and beyond its end otherwise.
        CellEdges(std::uint32_t pixels, std::uint32_t cells, double pixelsPerCell, bool isFlipped);

        std::uint32_t Cells() const { return cells; }

        /// Edge `index`, from 0 to Cells().
        std::int64_t operator[](std::size_t index) const;

        /// No cell is wider.
        std::uint64_t GreatestCell() const;

    private:
        std::uint32_t pixels;
        std::uint32_t cells;
        double pixelsPerCell;
        bool isFlipped;
    };
}
