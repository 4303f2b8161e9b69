#include "ppf/ASCIIHexSource.h"

#include "ppf/Failure.h"
#include "ppf/Scanner.h"

#include <array>

namespace Ppf
{
    namespace
    {
        /// Digits that are decoded at once where no white space stands between them.
        constexpr std::size_t BlockDigits = 64;
        constexpr std::size_t BlockBytes = BlockDigits / 2;
        constexpr std::uint8_t NoDigit = 0x80;

        /// Value of a digit of either case, or `noDigit`. Without a branch, so that loops over it become vectors.
        inline std::uint8_t DigitOf(char c)
        {
            const auto decimal = static_cast<std::uint8_t>(c - '0');
            const auto letter = static_cast<std::uint8_t>((c | 0x20) - 'a');
            const auto value = static_cast<std::uint8_t>(decimal < 10 ? decimal : letter + 10);
            return decimal < 10 || letter < 6 ? value : NoDigit;
        }

        /// False if one of the characters is not a digit.
        bool DecodeBlock(const char* text, unsigned char* out)
        {
            std::array<std::uint8_t, BlockDigits> digits = {};
            std::uint8_t all = 0;
            for (std::size_t i = 0; i < BlockDigits; ++i)
            {
                digits[i] = DigitOf(text[i]);
                all |= digits[i];
            }
            for (std::size_t i = 0; i < BlockBytes; ++i)
            {
                out[i] = static_cast<unsigned char>(digits[2 * i] << 4 | digits[2 * i + 1]);
            }
            return (all & NoDigit) == 0;
        }
    }

    std::size_t ASCIIHexSource::Read(unsigned char* out, std::size_t count)
    {
        std::size_t done = 0;
        while (done < count && !ended)
        {
            const auto fits = [&]
            { return count - done >= BlockBytes && data.bytes.size() - data.next >= BlockDigits; };
            while (fits() && DecodeBlock(data.bytes.data() + data.next, out + done))
            {
                data.next += BlockDigits;
                done += BlockBytes;
            }
            // Digit by digit over what is not a block: a line end within it, or the end of the data or of `out`.
            for (std::size_t i = 0; i < BlockBytes && done < count && !ended; ++i)
            {
                unsigned high = 0;
                unsigned low = 0;
                if (ReadDigit(high))
                {
                    // A lone last digit stands for one that is followed by 0.
                    ReadDigit(low);
                    out[done++] = static_cast<unsigned char>(high << 4 | low);
                }
            }
        }
        return done;
    }

    /// False at the end mark.
    bool ASCIIHexSource::ReadDigit(unsigned& digit)
    {
        for (; !ended && data.next < data.bytes.size(); ++data.next)
        {
            const char c = data.bytes[data.next];
            if (IsWhiteSpace(c))
            {
                continue;
            }
            if (c == '>')
            {
                ended = true;
                continue;
            }
            if (DigitOf(c) == NoDigit)
            {
                throw FormatError(data.Offset(), "ASCIIHex data holds a character that is not a digit");
            }
            digit = DigitOf(c);
            ++data.next;
            return true;
        }
        if (!ended)
        {
            throw FormatError(data.Offset(), "ASCIIHex data has no end mark \">\"");
        }
        return false;
    }
}
