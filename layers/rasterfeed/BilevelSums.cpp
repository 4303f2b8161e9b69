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
        , latest(words + 1)
        , nothing(words + 1)
        , before(words + 1)
        , ones(edges.size())
        , sums(edges.size())
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
        std::memcpy(latest.data(), row, rowBytes);
        if (weight == EdgeUnits)
        {
            AddToDigit(0, latest.data());
        }
        else
        {
            CountPlane(latest, weight);
        }
        added += weight;
    }

    template <class Sum>
    void BilevelSums<Sum>::AddToDigit(std::size_t digit, const std::uint64_t* bits)
    {
        if (digit == digits.size())
        {
            digits.push_back({Bits(words + 1), Bits(words + 1), false});
        }
        Digit& to = digits[digit];
        to.isPending = !to.isPending;
        if (to.isPending)
        {
            std::copy_n(bits, words, to.pending.data());
            return;
        }
        std::uint64_t* const carry = to.pending.data();
        AddBits(to.plane.data(), carry, bits, words);
        AddToDigit(digit + 1, carry);
    }

    template <class Sum>
    void BilevelSums<Sum>::CountPlane(const Bits& bits, Sum weight)
    {
        CountOnes(bits.data(), words, before.data(), places.data(), places.size(), ones.data());
        for (std::size_t i = 0; i < ones.size(); ++i)
        {
            sums[i] += ones[i] * weight;
        }
    }

    template <class Sum>
    void BilevelSums<Sum>::Finish(std::uint64_t height, unsigned char* line)
    {
        for (std::size_t i = 0; i < digits.size(); ++i)
        {
            // What waits goes on to the next digit, but for the last, where it counts by itself.
            const Sum weight = Sum{EdgeUnits} << i;
            if (digits[i].isPending && i + 1 < digits.size())
            {
                AddToDigit(i, nothing.data());
            }
            if (digits[i].isPending)
            {
                CountPlane(digits[i].pending, weight);
                digits[i].isPending = false;
            }
            CountPlane(digits[i].plane, weight);
            std::fill(digits[i].plane.begin(), digits[i].plane.end(), 0);
        }
        const auto place = [&](std::size_t i)
        { return (std::uint64_t{places[i].word} * 64 + places[i].pixel) * EdgeUnits + places[i].fraction; };
        for (std::size_t i = 0; i + 1 < cellEdges.size(); ++i)
        {
            const Sum area = Sum{static_cast<std::uint64_t>(cellEdges[i + 1] - cellEdges[i])} * height;
            const Sum inside = Sum{place(i + 1) - place(i)} * added;
            const Sum isOne = sums[i + 1] - sums[i];
            const Sum ink = onesAreInk ? isOne : inside - isOne;
            line[i] = MeanPixel<Sum>(255 * (area - ink), area);
        }
        std::fill(sums.begin(), sums.end(), 0);
        added = 0;
    }

    template class BilevelSums<std::uint64_t>;
    template class BilevelSums<WideSum>;
}
