#include "rasterfeed/BilevelSums.h"

#include "rasterfeed/CellEdges.h"
#include "rasterfeed/MeanPixel.h"

#include <algorithm>
#include <cstring>

namespace RasterFeed
{
    template <class Sum>
    BilevelSums<Sum>::BilevelSums(const SeparationForm& form, const std::vector<std::int64_t>& edges)
        : rowBytes(static_cast<std::size_t>(form.RowBytes()))
        , words((rowBytes + 7) / 8)
        , onesAreInk(form.inverted)
        , cellEdges(edges)
        , last((words + 1) * 8)
        , before(words + 1)
        , ones(edges.size())
        , wholeRows(edges.size())
        , partialRows(edges.size())
    {
        places.reserve(edges.size());
        for (const std::int64_t edge : edges)
        {
            const auto place = static_cast<std::uint64_t>(InsideImage(edge, form.width));
            const std::uint64_t pixel = place >> EdgeBits;
            places.push_back(
                {static_cast<std::uint32_t>(pixel / 64), static_cast<std::uint16_t>(pixel % 64),
                 static_cast<std::uint16_t>(place % EdgeUnits)});
        }
    }

    template <class Sum>
    void BilevelSums<Sum>::Add(const unsigned char* row, std::uint32_t weight)
    {
        if (std::memcmp(row, last.data(), rowBytes) != 0)
        {
            AddLast();
            std::memcpy(last.data(), row, rowBytes);
            isCounted = false;
        }
        lastWeight += weight;
        added += weight;
    }

    template <class Sum>
    void BilevelSums<Sum>::AddLast()
    {
        if (lastWeight == 0)
        {
            return;
        }
        if (!isCounted)
        {
            CountOnes(last.data(), words, before.data(), places.data(), places.size(), ones.data());
            isCounted = true;
        }
        if (lastWeight == EdgeUnits)
        {
            for (std::size_t i = 0; i < ones.size(); ++i)
            {
                wholeRows[i] += ones[i];
            }
        }
        else
        {
            for (std::size_t i = 0; i < ones.size(); ++i)
            {
                partialRows[i] += Sum{ones[i]} * lastWeight;
            }
        }
        lastWeight = 0;
    }

    template <class Sum>
    void BilevelSums<Sum>::Finish(std::uint64_t height, unsigned char* line)
    {
        AddLast();
        const auto place = [&](std::size_t i)
        { return std::uint64_t{places[i].word} * 64 * EdgeUnits + places[i].pixel * EdgeUnits + places[i].fraction; };
        const auto sum = [&](std::size_t i) { return (Sum{wholeRows[i]} << EdgeBits) + partialRows[i]; };
        for (std::size_t i = 0; i + 1 < cellEdges.size(); ++i)
        {
            const Sum area = Sum{static_cast<std::uint64_t>(cellEdges[i + 1] - cellEdges[i])} * height;
            const Sum inside = Sum{place(i + 1) - place(i)} * added;
            const Sum isOne = sum(i + 1) - sum(i);
            const Sum ink = onesAreInk ? isOne : inside - isOne;
            line[i] = MeanPixel<Sum>(255 * (area - ink), area);
        }
        std::fill(wholeRows.begin(), wholeRows.end(), 0);
        std::fill(partialRows.begin(), partialRows.end(), 0);
        added = 0;
    }

    template class BilevelSums<std::uint64_t>;
    template class BilevelSums<WideSum>;
}
