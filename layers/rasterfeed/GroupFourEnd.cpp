#include "GroupFourEnd.h"

namespace
{
    // The mark is made of two of these: eleven zeros and a one (ITU-T T.6, end-of-facsimile-block).
    constexpr std::size_t endOfLineBits = 12;

    // Bits of the code 0000001, which begins the extension to uncompressed mode: one that libtiff refuses.
    constexpr std::size_t extensionBits = 7;

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
        unsigned char MaskOf(std::size_t bit) const
        {
            return static_cast<unsigned char>(lowestFirst ? 1u << bit % 8 : 0x80u >> bit % 8);
        }
        bool At(std::size_t bit) const { return (bytes[bit / 8] & MaskOf(bit)) != 0; }

    private:
        const unsigned char* bytes;
        std::size_t count;
        bool lowestFirst;
    };

    bool IsEndOfLine(const Bits& bits, std::size_t end)
    {
        if (end < endOfLineBits || !bits.At(end - 1))
            return false;
        for (std::size_t bit = end - endOfLineBits; bit < end - 1; ++bit)
        {
            if (bits.At(bit))
                return false;
        }
        return true;
    }
}

std::optional<SpoiledByte> SpoilGroupFourEnd(const unsigned char* tail, std::size_t count, bool lowestFirst)
{
    const Bits bits(tail, count, lowestFirst);
    std::size_t end = bits.Count();
    while (end > 0 && !bits.At(end - 1))
        --end;
    if (!IsEndOfLine(bits, end))
        return std::nullopt;
    std::size_t start = end - endOfLineBits;
    if (IsEndOfLine(bits, start))
        start -= endOfLineBits;
    const std::size_t spoiled = start + extensionBits - 1;
    return SpoiledByte{spoiled / 8, static_cast<unsigned char>(tail[spoiled / 8] | bits.MaskOf(spoiled))};
}
