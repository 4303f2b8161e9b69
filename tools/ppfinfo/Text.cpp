#include "ppfinfo/Text.h"

#include "host/Text.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace PpfInfo
{
    namespace
    {
        bool IsContinuation(char c)
        {
            return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
        }
    }

    std::string ToUtf8(std::string_view bytes)
    {
        std::string text;
        while (!bytes.empty())
        {
            const std::size_t length = Host::FirstCharacter(bytes).bytes;
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
        return Host::OneLine(ToUtf8(bytes));
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
        // Space for the greatest double in full.
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
