#include "rasterfeed/BilevelSums.h"

#include "rasterfeed/CellEdges.h"
#include "rasterfeed/MeanPixel.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <utility>

#include <endian.h>

namespace RasterFeed
{
    namespace
    {
        /// One bit in `samples`, of which `sample` is the first.
        std::vector<std::uint64_t> MasksOf(unsigned sample, unsigned samples)
        {
            std::vector<std::uint64_t> masks(samples / std::gcd(samples, 64U));
            for (std::size_t bit = sample; bit < masks.size() * 64; bit += samples)
            {
                masks[bit / 64] |= htobe64(std::uint64_t{1} << (63 - bit % 64));
            }
            return masks;
        }
    }

    template <class Sum>
    BilevelSums<Sum>::BilevelSums(
        const SeparationForm& form, const std::vector<unsigned>& samples, const std::vector<std::int64_t>& edges)
        : rowBytes(static_cast<std::size_t>(form.RowBytes()))
        , words((rowBytes + 7) / 8)
        , width(form.width)
        , onesAreInk(form.inverted)
        , cellEdges(edges)
        , latest(words + 1)
        , nothing(words + 1)
        , before(words + 1)
        , ones(edges.size())
    {
        for (const unsigned sample : samples)
        {
            Channel channel = {MasksOf(sample, form.samples), {}, std::vector<Sum>(edges.size())};
            channel.places.reserve(edges.size());
            for (const std::int64_t edge : edges)
            {
                const auto place = static_cast<std::uint64_t>(InsideImage(edge, width));
                const std::uint64_t bit = (place >> EdgeBits) * form.samples + sample;
                channel.places.push_back(
                    {static_cast<std::uint32_t>(bit / 64), static_cast<std::uint16_t>(bit % 64),
                     static_cast<std::uint16_t>(place % EdgeUnits)});
            }
            channels.push_back(std::move(channel));
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
        for (Channel& channel : channels)
        {
            CountOnes(
                bits.data(), words, channel.masks.data(), channel.masks.size(), before.data(), channel.places.data(),
                channel.places.size(), ones.data());
            for (std::size_t i = 0; i < ones.size(); ++i)
            {
                channel.sums[i] += ones[i] * weight;
            }
        }
    }

    template <class Sum>
    void BilevelSums<Sum>::Finish(std::uint64_t height, unsigned char* line, std::size_t pitch)
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
        for (Channel& channel : channels)
        {
            FinishChannel(channel, height, line);
            line += pitch;
        }
        added = 0;
    }

    template <class Sum>
    void BilevelSums<Sum>::FinishChannel(Channel& channel, std::uint64_t height, unsigned char* line) const
    {
        for (std::size_t i = 0; i + 1 < cellEdges.size(); ++i)
        {
            const Sum area = Sum{static_cast<std::uint64_t>(cellEdges[i + 1] - cellEdges[i])} * height;
            const auto insideWidth =
                static_cast<std::uint64_t>(InsideImage(cellEdges[i + 1], width) - InsideImage(cellEdges[i], width));
            const Sum inside = Sum{insideWidth} * added;
            const Sum isOne = channel.sums[i + 1] - channel.sums[i];
            const Sum ink = onesAreInk ? isOne : inside - isOne;
            line[i] = MeanPixel<Sum>(255 * (area - ink), area);
        }
        std::fill(channel.sums.begin(), channel.sums.end(), 0);
    }

    template class BilevelSums<std::uint64_t>;
    template class BilevelSums<WideSum>;
}
