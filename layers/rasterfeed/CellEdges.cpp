#include "rasterfeed/CellEdges.h"

#include <cmath>

namespace RasterFeed
{
    namespace
    {
        // An image has up to 2^47 units. A cell of 2^58 is paper, to the nearest whole number, whatever it holds; and the area
        // of two such sides, times 511, fits 128 bits.
        constexpr std::int64_t FarEdge = std::int64_t{1} << 58;
    }

    CellEdges::CellEdges(std::uint32_t pixelCount, std::uint32_t cellCount, double ratio, bool fromFarEnd)
        : pixels(pixelCount)
        , cells(cellCount)
        , pixelsPerCell(ratio)
        , isFlipped(fromFarEnd)
    {
    }

    std::int64_t CellEdges::operator[](std::size_t index) const
    {
        const std::size_t cell = isFlipped ? cells - index : index;
        std::int64_t edge = 0; // also where the ratio is infinite
        if (cell > 0)
        {
            const double exact = std::floor(static_cast<double>(cell) * pixelsPerCell * EdgeUnits + 0.5);
            edge = exact < static_cast<double>(FarEdge) ? static_cast<std::int64_t>(exact) : FarEdge;
        }
        return isFlipped ? pixels * EdgeUnits - edge : edge;
    }

    std::uint64_t CellEdges::GreatestCell() const
    {
        // Two roundings, of which each moves an edge by up to a unit.
        const double exact = std::ceil(pixelsPerCell * EdgeUnits) + 2;
        return exact < static_cast<double>(FarEdge) ? static_cast<std::uint64_t>(exact) : std::uint64_t{FarEdge};
    }
}
