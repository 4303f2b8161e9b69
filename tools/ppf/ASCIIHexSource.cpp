#include "ppf/ASCIIHexSource.h"

#include <array>

#include "ppf/Failure.h"
#include "ppf/Scanner.h"

namespace ppf
{
    namespace
    {
        /// What a character is that is no digit.
        constexpr std::uint8_t noDigit = 0x80;

        constexpr std::array<std::uint8_t, 256> MakeDigits()
        {
            std::array<std::uint8_t, 256> digits = {};
            for (std::size_t i = 0; i < digits.size(); ++i)
            {
                digits[i] = noDigit;
            }
            for (std::uint8_t i = 0; i < 10; ++i)
            {
                digits[static_cast<std::size_t>('0' + i)] = i;
            }
            for (std::uint8_t i = 10; i < 16; ++i)
            {
                digits[static_cast<std::size_t>('a' + i - 10)] = i;
                digits[static_cast<std::size_t>('A' + i - 10)] = i;
            }
            return digits;
        }

        constexpr std::array<std::uint8_t, 256> digits = MakeDigits();

        std::uint8_t DigitOf(char c)
        {
            return digits[static_cast<unsigned char>(c)];
        }
    }

    std::size_t ASCIIHexSource::Read(unsigned char* out, std::size_t count)
    {
        std::size_t done = 0;
        while (done < count && !m_ended)
        {
            const char* const text = m_data.bytes.data();
            while (done < count && m_data.bytes.size() - m_data.next >= 2)
            {
                const std::uint8_t high = DigitOf(text[m_data.next]);
                const std::uint8_t low = DigitOf(text[m_data.next + 1]);
                if (((high | low) & noDigit) != 0)
                {
                    break;
                }
                out[done++] = static_cast<unsigned char>(high << 4 | low);
                m_data.next += 2;
            }
            unsigned high = 0;
            if (done < count && ReadDigit(high))
            {
                // A lone last digit stands for one that is followed by 0.
                unsigned low = 0;
                ReadDigit(low);
                out[done++] = static_cast<unsigned char>(high << 4 | low);
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
