#include "tiff2ppf/Text.h"

#include <cstddef>
#include <string_view>

namespace Tiff2Ppf
{
    namespace
    {
        struct CodePoint
        {
            char32_t value;
            std::size_t bytes; ///< 0 if the text does not start with well-formed UTF-8
        };

        /// The code point at the start of `text`, which is not empty.
        CodePoint FirstCodePoint(std::string_view text)
        {
            const auto lead = static_cast<unsigned char>(text.front());
            if (lead < 0x80)
            {
                return {lead, 1};
            }
            const std::size_t bytes = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
            if (lead < 0xC2 || lead > 0xF4 || text.size() < bytes)
            {
                return {0, 0};
            }
            char32_t value = lead & (0x7FU >> bytes);
            for (const char next : text.substr(1, bytes - 1))
            {
                const auto byte = static_cast<unsigned char>(next);
                if ((byte & 0xC0U) != 0x80)
                {
                    return {0, 0};
                }
                value = (value << 6U) | (byte & 0x3FU);
            }
            const char32_t smallest = bytes == 4 ? 0x10000 : bytes == 3 ? 0x800 : 0x80;
            const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
            if (value < smallest || value > 0x10FFFF || isSurrogate)
            {
                return {0, 0};
            }
            return {value, bytes};
        }

        bool IsShownAsItself(char32_t value)
        {
            const bool isControl = value < 0x20 || (value >= 0x7F && value < 0xA0);
            const bool isSeparator = value == 0x2028 || value == 0x2029;
            return !isControl && !isSeparator;
        }

        void AppendAsHex(std::string& out, std::string_view bytes)
        {
            constexpr char Digits[] = "0123456789abcdef";
            for (const char next : bytes)
            {
                const auto byte = static_cast<unsigned char>(next);
                out += {'\\', 'x', Digits[byte >> 4U], Digits[byte & 0x0FU]};
            }
        }
    }

    std::string Quoted(const std::string& text)
    {
        return '"' + text + '"';
    }

    std::string OneLine(const std::string& text)
    {
        std::string line;
        line.reserve(text.size());
        for (std::string_view rest = text; !rest.empty();)
        {
            const CodePoint point = FirstCodePoint(rest);
            const std::string_view bytes = rest.substr(0, point.bytes == 0 ? 1 : point.bytes);
            if (point.bytes != 0 && IsShownAsItself(point.value))
            {
                line += bytes;
            }
            else
            {
                AppendAsHex(line, bytes);
            }
            rest.remove_prefix(bytes.size());
        }
        return line;
    }

    bool IsUtf8(const std::string& text)
    {
        for (std::string_view rest = text; !rest.empty();)
        {
            const CodePoint point = FirstCodePoint(rest);
            if (point.bytes == 0)
            {
                return false;
            }
            rest.remove_prefix(point.bytes);
        }
        return true;
    }
}
