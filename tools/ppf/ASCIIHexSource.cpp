// Pairs of digits to bytes, whatever white space stands between them.
#include "ppf/ASCIIHexSource.h"

#include <array>

#include "ppf/Failure.h"
#include "ppf/Scanner.h"

namespace ppf
{
    namespace
    {
        /// Digits that are decoded at once where no white space stands between them.
        constexpr std::size_t blockDigits = 64;
        constexpr std::size_t blockBytes = blockDigits / 2;
        constexpr std::uint8_t noDigit = 0x80;

        /// Value of a digit of either case, or `noDigit`. Without a branch, so that loops over it become vectors.
        inline std::uint8_t DigitOf(char c)
        {
            const auto decimal = static_cast<std::uint8_t>(c - '0');
            const auto letter = static_cast<std::uint8_t>((c | 0x20) - 'a');
            const auto value = static_cast<std::uint8_t>(decimal < 10 ? decimal : letter + 10);
            return decimal < 10 || letter < 6 ? value : noDigit;
        }

        /// False if one of the characters is no digit.
        bool DecodeBlock(const char* text, unsigned char* out)
        {
            std::array<std::uint8_t, blockDigits> digits = {};
            std::uint8_t all = 0;
            for (std::size_t i = 0; i < blockDigits; ++i)
            {
                digits[i] = DigitOf(text[i]);
                all |= digits[i];
            }
            for (std::size_t i = 0; i < blockBytes; ++i)
            {
                out[i] = static_cast<unsigned char>(digits[2 * i] << 4 | digits[2 * i + 1]);
            }
            return (all & noDigit) == 0;
        }
    }

    std::size_t ASCIIHexSource::Read(unsigned char* out, std::size_t count)
    {
        std::size_t done = 0;
        while (done < count && !m_ended)
        {
            const auto isRoom = [&]
            { return count - done >= blockBytes && m_data.bytes.size() - m_data.next >= blockDigits; };
            while (isRoom() && DecodeBlock(m_data.bytes.data() + m_data.next, out + done))
            {
                m_data.next += blockDigits;
                done += blockBytes;
            }
            // Digit by digit over what is no block: a line end within it, or the end of the data or of the room.
            for (std::size_t i = 0; i < blockBytes && done < count && !m_ended; ++i)
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
        for (; !m_ended && m_data.next < m_data.bytes.size(); ++m_data.next)
        {
            const char c = m_data.bytes[m_data.next];
            if (IsWhiteSpace(c))
            {
                continue;
            }
            if (c == '>')
            {
                m_ended = true;
                continue;
            }
            if (DigitOf(c) == noDigit)
            {
                throw FormatError(m_data.Offset(), "ASCIIHex data holds a character that is no digit");
            }
            digit = DigitOf(c);
            ++m_data.next;
            return true;
        }
        if (!m_ended)
        {
            throw FormatError(m_data.Offset(), "ASCIIHex data has no end mark \">\"");
        }
        return false;
    }
}
