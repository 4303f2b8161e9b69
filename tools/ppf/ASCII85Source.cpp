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
        constexpr unsigned GroupDigits = 5;
        constexpr unsigned GroupBytes = 4;

        using PlaceValues = std::array<std::array<std::uint64_t, 256>, GroupDigits>;

        /// What each character adds to a group's number at each place; above any number if it is not a digit.
        constexpr PlaceValues MakeValues()
        {
            PlaceValues values = {};
            std::uint64_t unit = 1;
            for (unsigned place = GroupDigits; place-- > 0; unit *= Base)
            {
                for (unsigned c = 0; c < 256; ++c)
                {
                    const bool isDigit = c >= unsigned{FirstDigit} && c <= unsigned{LastDigit};
                    values[place][c] = isDigit ? (c - FirstDigit) * unit : GreatestGroup + 1;
                }
            }
            return values;
        }

        constexpr PlaceValues Values = MakeValues();

        void StoreBigEndian(unsigned char* out, std::uint32_t value)
        {
            out[0] = static_cast<unsigned char>(value >> 24);
            out[1] = static_cast<unsigned char>(value >> 16);
            out[2] = static_cast<unsigned char>(value >> 8);
            out[3] = static_cast<unsigned char>(value);
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
        while (count - done >= GroupBytes && end - text >= GroupDigits)
        {
            if (*text == ZeroGroup)
            {
                std::memset(out + done, 0, GroupBytes);
                done += GroupBytes;
                ++text;
                continue;
            }
            std::uint64_t value = 0;
            for (unsigned i = 0; i < GroupDigits; ++i)
            {
                value += Values[i][static_cast<unsigned char>(text[i])];
            }
            if (value > GreatestGroup)
            {
                break;
            }
            StoreBigEndian(out + done, static_cast<std::uint32_t>(value));
            done += GroupBytes;
            text += GroupDigits;
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
                Store(0, GroupBytes);
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
            if (++digits == GroupDigits)
            {
                ++data.next;
                Store(value, GroupBytes);
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
            for (; digits < GroupDigits; ++digits)
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
