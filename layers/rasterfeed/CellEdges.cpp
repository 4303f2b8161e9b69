#include "rasterfeed/CellEdges.h"

#include <algorithm>
#include <cmath>

namespace RasterFeed
{
    namespace
    {
        // An image has up to 2^47 units. A cell of 2^58 is paper, to the nearest whole number, whatever it holds; and the area
        // of two such sides, times 511, fits 128 bits.
        constexpr std::int64_t FarEdge = std::int64_t{1} << 58;

        std::int64_t CellEdge(std::uint32_t cell, double pixelsPerCell)
        {
            if (cell == 0)
            {
                return 0;
            }
            const double edge = std::floor(cell * pixelsPerCell * EdgeUnits + 0.5);
            return edge < static_cast<double>(FarEdge) ? static_cast<std::int64_t>(edge) : FarEdge;
        }
    }

    std::vector<std::int64_t> CellEdges(std::uint32_t pixels, std::uint32_t cells, double pixelsPerCell, bool isFlipped)
    {
        std::vector<std::int64_t> edges(std::size_t{cells} + 1);
        for (std::uint32_t i = 0; i <= cells; ++i)
        {
            edges[i] = CellEdge(i, pixelsPerCell);
        }
        if (isFlipped)
        {
            std::reverse(edges.begin(), edges.end());
            for (std::int64_t& edge : edges)
            {
                edge = pixels * EdgeUnits - edge;
            }
        }
        return edges;
    }
}
