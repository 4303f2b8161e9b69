#include "GroupFourEnd.h"

#include <algorithm>

namespace
{
    // The mark is made of two of these: eleven zeros and a one (ITU-T T.6, end-of-facsimile-block).
    constexpr std::size_t endOfLineBits = 12;

    // Bits of the code 0000001, which begins the extension to uncompressed mode: one that libtiff refuses.
    constexpr std::size_t extensionBits = 7;

    // libtiff takes seven zeros for the start of a mark, and is content if no one follows within four more bits or before
    // the data ends. Of the codes none ends with more than three zeros, so that a one behind ten makes every reading of
    // them an error.
    constexpr std::size_t harmlessZeros = 7;
    constexpr std::size_t zerosBeforeSpoil = 10;

    /// Bits in the order in which they are sent.
    class Bits
    {
    public:
        Bits(const unsigned char* data, std::size_t byteCount, bool lowest)
            : bytes(data)
            , count(byteCount * 8)
            , lowestFirst(lowest)
        {
        }

        std::size_t Count() const { return count; }
        bool At(std::size_t bit) const { return (bytes[bit / 8] & MaskOf(bit)) != 0; }
        SpoiledByte WithOneAt(std::size_t bit) const
        {
            return {bit / 8, static_cast<unsigned char>(bytes[bit / 8] | MaskOf(bit))};
        }

        bool IsEndOfLine(std::size_t end) const
        {
            if (end < endOfLineBits || !At(end - 1))
                return false;
            for (std::size_t bit = end - endOfLineBits; bit < end - 1; ++bit)
            {
                if (At(bit))
                    return false;
            }
            return true;
        }

    private:
        unsigned MaskOf(std::size_t bit) const { return lowestFirst ? 1u << bit % 8 : 0x80u >> bit % 8; }

        const unsigned char* bytes;
        std::size_t count;
        bool lowestFirst;
    };
}

std::optional<SpoiledByte> SpoilGroupFourEnd(const unsigned char* tail, std::size_t count, bool lowestFirst)
{
    const Bits bits(tail, count, lowestFirst);
    std::size_t end = bits.Count();
    while (end > 0 && !bits.At(end - 1))
        --end;
    if (bits.IsEndOfLine(end))
    {
        std::size_t mark = end - endOfLineBits;
        if (bits.IsEndOfLine(mark))
            mark -= endOfLineBits;
        return bits.WithOneAt(mark + extensionBits - 1);
    }
    if (bits.Count() - end <= harmlessZeros)
        return std::nullopt;
    return bits.WithOneAt(std::min(end + zerosBeforeSpoil, bits.Count() - 1));
}
