#include "host/Text.h"

#include <algorithm>
#include <system_error>

namespace Host
{
    namespace
    {
        bool IsContinuation(char c)
        {
            return (static_cast<unsigned char>(c) & 0xC0U) == 0x80;
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

    Character FirstCharacter(std::string_view text)
    {
        constexpr Character None = {0, 0};
        const auto lead = static_cast<unsigned char>(text.front());
        if (lead < 0x80)
        {
            return {lead, 1};
        }
        const std::size_t bytes = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
        if (lead < 0xC2 || lead > 0xF4 || text.size() < bytes)
        {
            return None;
        }
        char32_t value = lead & (0x7FU >> bytes);
        for (const char next : text.substr(1, bytes - 1))
        {
            if (!IsContinuation(next))
            {
                return None;
            }
            value = (value << 6U) | (static_cast<unsigned char>(next) & 0x3FU);
        }
        const char32_t smallest = bytes == 4 ? 0x10000 : bytes == 3 ? 0x800 : 0x80;
        const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
        return value < smallest || value > 0x10FFFF || isSurrogate ? None : Character{value, bytes};
    }

    bool IsUtf8(std::string_view text)
    {
        while (!text.empty())
        {
            const Character next = FirstCharacter(text);
            if (next.bytes == 0)
            {
                return false;
            }
            text.remove_prefix(next.bytes);
        }
        return true;
    }

    std::string Quoted(std::string_view text)
    {
        constexpr std::size_t MostBytes = 1000;
        return '"' + OneLine(Shortened(text, MostBytes)) + '"';
    }

    std::string OneLine(std::string_view text)
    {
        std::string line;
        line.reserve(text.size());
        while (!text.empty())
        {
            const Character next = FirstCharacter(text);
            const std::string_view bytes = text.substr(0, next.bytes == 0 ? 1 : next.bytes);
            if (next.bytes != 0 && IsShownAsItself(next.value))
            {
                line += bytes;
            }
            else
            {
                AppendAsHex(line, bytes);
            }
            text.remove_prefix(bytes.size());
        }
        return line;
    }

    std::string Shortened(std::string_view text, std::size_t most)
    {
        if (text.size() <= most)
        {
            return std::string(text);
        }
        constexpr std::string_view Gap = " ... ";
        const std::size_t half = (most - std::min(most, Gap.size())) / 2;
        std::size_t head = half;
        std::size_t tail = text.size() - half;
        // A character has three bytes after its first at most; text that is not UTF-8 is cut anywhere.
        for (int i = 0; i < 3 && head > 0 && IsContinuation(text[head]); ++i)
        {
            --head;
        }
        for (int i = 0; i < 3 && tail < text.size() && IsContinuation(text[tail]); ++i)
        {
            ++tail;
        }
        return std::string(text.substr(0, head)).append(Gap).append(text.substr(tail));
    }

    std::string SystemText(int problem)
    {
        return std::generic_category().message(problem);
    }
}
