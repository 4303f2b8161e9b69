// UTF-8 by its table of valid forms, and numbers by to_chars.
#include "ppfinfo/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

namespace PpfInfo
{
    namespace
    {
        bool IsContinuation(char c)
        {
            return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
        }

        /// Bytes of the character that begins the text, or 0 if that is no UTF-8: a byte out of place, a form longer
        /// than needed, a surrogate, or a number above the last character.
        std::size_t CharacterLength(std::string_view text)
        {
            const auto lead = static_cast<unsigned char>(text[0]);
            const std::size_t length = lead < 0x80   ? 1
                                       : lead < 0xC2 ? 0
                                       : lead < 0xE0 ? 2
                                       : lead < 0xF0 ? 3
                                       : lead < 0xF5 ? 4
                                                     : 0;
            if (length < 2 || length > text.size())
            {
                return length < 2 ? length : 0;
            }
            for (std::size_t i = 1; i < length; ++i)
            {
                if (!IsContinuation(text[i]))
                {
                    return 0;
                }
            }
            const auto second = static_cast<unsigned char>(text[1]);
            const bool isLonger = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
            const bool isSurrogate = lead == 0xED && second >= 0xA0;
            const bool isTooGreat = lead == 0xF4 && second >= 0x90;
            return isLonger || isSurrogate || isTooGreat ? 0 : length;
        }
    }

    std::string ToUtf8(std::string_view bytes)
    {
        std::string text;
        while (!bytes.empty())
        {
            const std::size_t length = CharacterLength(bytes);
            if (length == 0)
            {
                const auto byte = static_cast<unsigned char>(bytes[0]);
                text += static_cast<char>(0xC0 | byte >> 6);
                text += static_cast<char>(0x80 | (byte & 0x3F));
            }
            else
            {
                text += bytes.substr(0, length);
            }
            bytes.remove_prefix(length == 0 ? 1 : length);
        }
        return text;
    }

    std::string ToPrintable(std::string_view bytes)
    {
        constexpr char Digits[] = "0123456789ABCDEF";
        const std::string utf8 = ToUtf8(bytes);
        std::string text;
        const auto addEscaped = [&](unsigned char code)
        {
            text += "\\x";
            text += Digits[code >> 4];
            text += Digits[code & 15];
        };
        for (std::size_t i = 0; i < utf8.size(); ++i)
        {
            const auto code = static_cast<unsigned char>(utf8[i]);
            // Control characters are below blank, DEL, and U+0080 to U+009F, which are C2 80 to C2 9F.
            const bool isHighControl = code == 0xC2 && static_cast<unsigned char>(utf8[i + 1]) < 0xA0;
            if (isHighControl)
            {
                addEscaped(static_cast<unsigned char>(utf8[++i]));
            }
            else if (code < ' ' || code == 0x7F)
            {
                addEscaped(code);
            }
            else
            {
                text += utf8[i];
            }
        }
        return text;
    }

    std::size_t WidthOf(std::string_view text)
    {
        return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), IsContinuation));
    }

    std::string PaddedLeft(const std::string& text, std::size_t width)
    {
        const std::size_t taken = WidthOf(text);
        return std::string(taken < width ? width - taken : 0, ' ') + text;
    }

    std::string PaddedRight(const std::string& text, std::size_t width)
    {
        const std::size_t taken = WidthOf(text);
        return text + std::string(taken < width ? width - taken : 0, ' ');
    }

    std::string Fixed(double value, int digits)
    {
        // Room for the greatest double in full.
        std::array<char, 400> text = {};
        const auto result =
            std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, digits);
        return {text.data(), result.ptr};
    }

    std::string Shortest(double value)
    {
        std::array<char, 64> text = {};
        const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
        return {text.data(), result.ptr};
    }
}
