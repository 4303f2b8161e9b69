#include "ppf/ASCII85Source.h"

#include "ppf/Failure.h"
#include "ppf/Keywords.h"
#include "ppf/Scanner.h"

#include <cstring>

namespace Ppf
{
    namespace
    {
        constexpr char FirstDigit = '!';
        constexpr char LastDigit = 'u';
        constexpr char ZeroGroup = 'z';
        constexpr std::uint64_t Base = 85;
        constexpr std::uint64_t GreatestGroup = 0xFFFFFFFF;

        void StoreBigEndian(unsigned char* out, std::uint32_t value)
        {
            out[0] = static_cast<unsigned char>(value >> 24);
            out[1] = static_cast<unsigned char>(value >> 16);
            out[2] = static_cast<unsigned char>(value >> 8);
            out[3] = static_cast<unsigned char>(value);
        }

        /// Eight characters as a number, the first in its lowest byte. A group is the lower five.
        using Characters = std::uint64_t;
        constexpr Characters Ones = 0x0101010101;

        Characters Load(const char* text)
        {
            std::array<unsigned char, 8> bytes = {};
            std::memcpy(bytes.data(), text, bytes.size());
            Characters characters = 0;
            for (unsigned i = 0; i < bytes.size(); ++i)
            {
                characters |= static_cast<Characters>(bytes[i]) << (8 * i);
            }
            return characters;
        }

        /// True if the five characters of a group are all digits: a byte above "u" or below "!" sets the highest bit of
        /// its sum or difference, and a carry or borrow only ever comes from a byte that did.
        bool AreDigits(Characters group)
        {
            const Characters tooGreat = group + Ones * (0x7F - LastDigit);
            const Characters tooSmall = group - Ones * FirstDigit;
            return ((group | tooGreat | tooSmall) & Ones * 0x80) == 0;
        }

        /// The number that five digits stand for. Neighbours are joined to pairs and pairs to fours within one number,
        /// which takes three multiplications in place of four that wait for each other.
        std::uint64_t ValueOf(Characters group)
        {
            const std::uint64_t digits = group - Ones * FirstDigit;
            const std::uint64_t pairs = (digits & 0xFF00FF) * Base + (digits >> 8 & 0xFF00FF);
            const std::uint64_t four = (pairs & 0xFFFF) * (Base * Base) + (pairs >> 16 & 0xFFFF);
            return four * Base + (digits >> 32 & 0xFF);
        }
    }

    ASCII85Source::ASCII85Source(const EncodedText& theData)
        : data(theData)
    {
        if (data.bytes.substr(0, Filter::Ascii85Begin.size()) == Filter::Ascii85Begin)
        {
            data.next = Filter::Ascii85Begin.size();
        }
    }

    std::size_t ASCII85Source::Read(unsigned char* out, std::size_t count)
    {
        std::size_t done = 0;
        while (done < count)
        {
            if (groupNext < groupEnd)
            {
                out[done++] = group[groupNext++];
                continue;
            }
            done += ReadWholeGroups(out + done, count - done);
            if (done == count || ended)
            {
                break;
            }
            ReadGroup();
        }
        return done;
    }

    /// Decodes groups that stand without white space and go into `out` in full.
    std::size_t ASCII85Source::ReadWholeGroups(unsigned char* out, std::size_t count)
    {
        const char* text = data.bytes.data() + data.next;
        const char* const end = data.bytes.data() + data.bytes.size();
        std::size_t done = 0;
        while (count - done >= 4 && end - text >= 8)
        {
            const Characters characters = Load(text);
            if (*text == ZeroGroup)
            {
                std::memset(out + done, 0, 4);
                done += 4;
                ++text;
                continue;
            }
            const std::uint64_t value = ValueOf(characters);
            if (!AreDigits(characters) || value > GreatestGroup)
            {
                break;
            }
            StoreBigEndian(out + done, static_cast<std::uint32_t>(value));
            done += 4;
            text += 5;
        }
        data.next = static_cast<std::size_t>(text - data.bytes.data());
        return done;
    }

    /// Decodes one group, whatever stands between its characters, or the last and incomplete one.
    void ASCII85Source::ReadGroup()
    {
        std::uint64_t value = 0;
        unsigned digits = 0;
        for (; data.next < data.bytes.size(); ++data.next)
        {
            const char c = data.bytes[data.next];
            if (IsWhiteSpace(c))
            {
                continue;
            }
            if (c == ZeroGroup && digits == 0)
            {
                ++data.next;
                Store(0, 4);
                return;
            }
            if (c == Filter::Ascii85End[0])
            {
                ended = true;
                break;
            }
            if (c < FirstDigit || c > LastDigit)
            {
                throw FormatError(
                    data.Offset(), c == ZeroGroup ? "ASCII85 data has \"z\" within a group"
                                                  : "ASCII85 data holds a character that is not one of its digits");
            }
            value = value * Base + static_cast<unsigned>(c - FirstDigit);
            if (++digits == 5)
            {
                ++data.next;
                Store(value, 4);
                return;
            }
        }
        if (!ended)
        {
            throw FormatError(data.Offset(), "ASCII85 data has no end mark \"~>\"");
        }
        if (digits == 1)
        {
            throw FormatError(data.Offset(), "ASCII85 data ends in a group of one character");
        }
        if (digits > 1)
        {
            // The digits that were left out are the greatest: so the bytes that remain come out rounded down.
            const unsigned bytes = digits - 1;
            for (; digits < 5; ++digits)
            {
                value = value * Base + (Base - 1);
            }
            Store(value, bytes);
        }
    }

    void ASCII85Source::Store(std::uint64_t value, unsigned bytes)
    {
        if (value > GreatestGroup)
        {
            throw FormatError(data.Offset(), "ASCII85 data has a group above 4294967295");
        }
        StoreBigEndian(group.data(), static_cast<std::uint32_t>(value));
        groupNext = 0;
        groupEnd = bytes;
    }
}
