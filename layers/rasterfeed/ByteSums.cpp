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
    ByteSums<Sum>::ByteSums(
        const SeparationForm& form, const std::vector<unsigned>& wanted, const std::vector<std::int64_t>& edges)
        : isInverted(form.inverted)
        , width(form.width)
        , samples(form.samples)
        , columns(samples * width)
        , channels(wanted)
        , expansion(form.bits, false, false, columns)
        , cellEdges(edges)
        , expanded(expansion.WorksInPlace() ? 0 : columns)
        , wholeRows(columns)
        , partialRows(columns)
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
            AddBytes(wholeRows.data(), line, columns);
            ++rows;
        }
        else
        {
            AddWeightedBytes(partialRows.data(), line, weight, columns);
        }
        added += weight;
    }

    template <class Sum>
    void ByteSums<Sum>::Spill()
    {
        manyRows.resize(columns);
        for (std::size_t i = 0; i < columns; ++i)
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
    void ByteSums<Sum>::FinishChannel(std::size_t sample, std::uint64_t height, unsigned char* line) const
    {
        // What lies before an edge may wrap around; the difference between two edges does not.
        Sum whole = 0; // of weight 1
        std::size_t pixel = 0;
        const auto before = [&](std::int64_t edge)
        {
            const auto place = static_cast<std::uint64_t>(InsideImage(edge, width));
            for (const std::size_t end = place >> EdgeBits; pixel < end; ++pixel)
            {
                whole += SumOfColumn(pixel * samples + sample);
            }
            const std::uint64_t fraction = place % EdgeUnits;
            return (whole << EdgeBits) + (fraction != 0 ? Sum{SumOfColumn(pixel * samples + sample)} * fraction : 0);
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
    }

    template <class Sum>
    void ByteSums<Sum>::Finish(std::uint64_t height, unsigned char* line, std::size_t pitch)
    {
        for (const unsigned sample : channels)
        {
            FinishChannel(sample, height, line);
            line += pitch;
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
