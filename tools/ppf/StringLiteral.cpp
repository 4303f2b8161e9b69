#include "ppf/StringLiteral.h"

#include "ppf/Number.h"
#include "ppf/Scanner.h"

#include <cstdint>

namespace Ppf
{
    namespace
    {
        bool IsOctal(char c)
        {
            return c >= '0' && c <= '7';
        }

        std::string ParenthesisedContent(std::string_view content)
        {
            std::string bytes;
            for (std::size_t i = 0; i < content.size(); ++i)
            {
                char c = content[i];
                const auto next = [&]() -> char { return i + 1 < content.size() ? content[i + 1] : '\0'; };
                if (c == '\r')
                {
                    // Every line end within a string reads as LF.
                    i += next() == '\n' ? 1u : 0u;
                    bytes += '\n';
                    continue;
                }
                if (c != '\\')
                {
                    bytes += c;
                    continue;
                }
                if (i + 1 == content.size())
                {
                    break;
                }
                c = content[++i];
                if (c == '\r' || c == '\n')
                {
                    i += c == '\r' && next() == '\n' ? 1u : 0u;
                }
                else if (IsOctal(c))
                {
                    unsigned value = DigitOf(c);
                    for (int digits = 1; digits < 3 && IsOctal(next()); ++digits)
                    {
                        value = value * 8 + DigitOf(content[++i]);
                    }
                    bytes += static_cast<char>(value & 0xFF);
                }
                else
                {
                    constexpr std::string_view Letters = "nrtbf";
                    constexpr std::string_view Meanings = "\n\r\t\b\f";
                    const std::size_t found = Letters.find(c);
                    bytes += found == std::string_view::npos ? c : Meanings[found];
                }
            }
            return bytes;
        }

        std::string HexContent(std::string_view content)
        {
            std::string bytes;
            unsigned high = 16;
            for (const char c : content)
            {
                const unsigned digit = DigitOf(c);
                if (digit >= 16)
                {
                    continue;
                }
                if (high == 16)
                {
                    high = digit;
                    continue;
                }
                bytes += static_cast<char>(high * 16 + digit);
                high = 16;
            }
            if (high != 16)
            {
                bytes += static_cast<char>(high * 16);
            }
            return bytes;
        }

        /// Nothing if the content is not ASCII85.
        std::optional<std::string> Ascii85Content(std::string_view content)
        {
            std::string bytes;
            std::uint64_t group = 0;
            unsigned count = 0;
            const auto put = [&](unsigned digits)
            {
                for (unsigned i = 0; i + 1 < digits; ++i)
                {
                    bytes += static_cast<char>(group >> (24 - 8 * i) & 0xFF);
                }
                group = 0;
                count = 0;
            };
            for (const char c : content)
            {
                if (IsWhiteSpace(c))
                {
                    continue;
                }
                if (c == 'z' && count == 0)
                {
                    put(5);
                    continue;
                }
                if (c < '!' || c > 'u')
                {
                    return std::nullopt;
                }
                group = group * 85 + static_cast<unsigned>(c - '!');
                if (++count == 5)
                {
                    put(5);
                }
            }
            if (count == 1)
            {
                return std::nullopt;
            }
            if (count > 1)
            {
                const unsigned digits = count;
                for (; count < 5; ++count)
                {
                    group = group * 85 + 84;
                }
                put(digits);
            }
            return bytes;
        }
    }

    std::optional<std::string> StringOf(std::string_view text)
    {
        if (text.size() >= 2 && text.front() == '(' && text.back() == ')')
        {
            return ParenthesisedContent(text.substr(1, text.size() - 2));
        }
        if (text.size() >= 4 && text.substr(0, 2) == "<~")
        {
            return Ascii85Content(text.substr(2, text.size() - 4));
        }
        if (text.size() >= 2 && text.front() == '<' && text.back() == '>' && text[1] != '<')
        {
            return HexContent(text.substr(1, text.size() - 2));
        }
        return std::nullopt;
    }
}
