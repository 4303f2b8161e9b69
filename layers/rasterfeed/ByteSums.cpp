#include "rasterfeed/ByteSums.h"

#include "rasterfeed/CellEdges.h"
#include "rasterfeed/MeanPixel.h"
#include "rasterfeed/RowSums.h"

#include <algorithm>

namespace RasterFeed
{
    namespace
    {
        // Of 255 at most each, so that 16 bits hold them.
        constexpr std::uint32_t MostRows = 257;
    }

    template <class Sum>
    ByteSums<Sum>::ByteSums(const SeparationForm& form, const std::vector<std::int64_t>& edges)
        : expansion(form.bits, false, false, form.width)
        , isInverted(form.inverted)
        , width(form.width)
        , cellEdges(edges)
        , expanded(expansion.WorksInPlace() ? 0 : form.width)
        , wholeRows(form.width)
        , partialRows(form.width)
    {
    }

    template <class Sum>
    void ByteSums<Sum>::Add(const unsigned char* row, std::uint32_t weight)
    {
        const unsigned char* line = row;
        if (!expansion.WorksInPlace())
        {
            expansion.Expand(row, expanded.data());
            line = expanded.data();
        }
        if (weight == EdgeUnits)
        {
            if (rows == MostRows)
            {
                Spill();
            }
            AddBytes(wholeRows.data(), line, width);
            ++rows;
        }
        else
        {
            AddWeightedBytes(partialRows.data(), line, weight, width);
        }
        added += weight;
    }

    template <class Sum>
    void ByteSums<Sum>::Spill()
    {
        manyRows.resize(width);
        for (std::uint32_t i = 0; i < width; ++i)
        {
            manyRows[i] += wholeRows[i];
        }
        std::fill(wholeRows.begin(), wholeRows.end(), 0);
        rows = 0;
    }

    template <class Sum>
    std::uint64_t ByteSums<Sum>::SumOfColumn(std::size_t column) const
    {
        const std::uint64_t whole = wholeRows[column] + (manyRows.empty() ? 0 : manyRows[column]);
        return (whole << EdgeBits) + partialRows[column];
    }

    template <class Sum>
    void ByteSums<Sum>::Finish(std::uint64_t height, unsigned char* line)
    {
        // What lies before an edge may wrap around; the difference between two edges does not.
        Sum columns = 0; // of weight 1
        std::size_t column = 0;
        const auto before = [&](std::int64_t edge)
        {
            const auto place = static_cast<std::uint64_t>(InsideImage(edge, width));
            for (const std::size_t end = place >> EdgeBits; column < end; ++column)
            {
                columns += SumOfColumn(column);
            }
            const std::uint64_t fraction = place % EdgeUnits;
            return (columns << EdgeBits) + (fraction != 0 ? Sum{SumOfColumn(column)} * fraction : 0);
        };
        Sum sum = before(cellEdges[0]);
        for (std::size_t i = 0; i + 1 < cellEdges.size(); ++i)
        {
            const std::int64_t edge = cellEdges[i + 1];
            const Sum area = Sum{static_cast<std::uint64_t>(edge - cellEdges[i])} * height;
            const auto insideWidth =
                static_cast<std::uint64_t>(InsideImage(edge, width) - InsideImage(cellEdges[i], width));
            const Sum inside = Sum{insideWidth} * added;
            const Sum next = before(edge);
            const Sum values = isInverted ? 255 * inside - (next - sum) : next - sum;
            line[i] = MeanPixel<Sum>(255 * (area - inside) + values, area);
            sum = next;
        }
        std::fill(wholeRows.begin(), wholeRows.end(), 0);
        std::fill(partialRows.begin(), partialRows.end(), 0);
        manyRows.clear();
        rows = 0;
        added = 0;
    }

    template class ByteSums<std::uint64_t>;
    template class ByteSums<WideSum>;
}
