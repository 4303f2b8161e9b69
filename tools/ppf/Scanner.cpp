#include "ppf/Scanner.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

#include "ppf/Failure.h"

namespace ppf
{
    namespace
    {
        enum CharacterClass : std::uint8_t
        {
            regular,
            whiteSpace,
            delimiter
        };

        constexpr std::array<CharacterClass, 256> MakeClasses()
        {
            std::array<CharacterClass, 256> classes = {};
            for (const char c : std::string_view("\0\t\n\f\r ", 6))
            {
                classes[static_cast<unsigned char>(c)] = whiteSpace;
            }
            for (const char c : std::string_view("()<>[]{}/%"))
            {
                classes[static_cast<unsigned char>(c)] = delimiter;
            }
            return classes;
        }

        constexpr std::array<CharacterClass, 256> classes = MakeClasses();

        CharacterClass ClassOf(char c)
        {
            return classes[static_cast<unsigned char>(c)];
        }

        /// Value of a digit in bases up to 36, or 36.
        unsigned DigitOf(char c)
        {
            if (c >= '0' && c <= '9')
            {
                return static_cast<unsigned>(c - '0');
            }
            if (c >= 'a' && c <= 'z')
            {
                return static_cast<unsigned>(c - 'a') + 10;
            }
            if (c >= 'A' && c <= 'Z')
            {
                return static_cast<unsigned>(c - 'A') + 10;
            }
            return 36;
        }

        bool IsOctal(char c)
        {
            return c >= '0' && c <= '7';
        }

        std::optional<double> RadixNumberOf(std::string_view text)
        {
            const std::size_t mark = text.find('#');
            if (mark == std::string_view::npos || mark + 1 == text.size())
            {
                return std::nullopt;
            }
            unsigned base = 0;
            const auto parsed = std::from_chars(text.data(), text.data() + mark, base);
            if (parsed.ec != std::errc() || parsed.ptr != text.data() + mark || base < 2 || base > 36)
            {
                return std::nullopt;
            }
            std::uint64_t value = 0;
            const char* end = text.data() + text.size();
            const auto digits = std::from_chars(text.data() + mark + 1, end, value, static_cast<int>(base));
            if (digits.ec != std::errc() || digits.ptr != end)
            {
                return std::nullopt;
            }
            return static_cast<double>(value);
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
                    constexpr std::string_view letters = "nrtbf";
                    constexpr std::string_view meanings = "\n\r\t\b\f";
                    const std::size_t found = letters.find(c);
                    bytes += found == std::string_view::npos ? c : meanings[found];
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

        /// Nothing if the content is no ASCII85.
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

    bool IsWhiteSpace(char c)
    {
        return ClassOf(c) == whiteSpace;
    }

    Scanner::Scanner(std::string_view bytes, std::uint64_t begin)
        : m_bytes(bytes)
        , m_position(static_cast<std::size_t>(begin))
    {
    }

    Token Scanner::Next()
    {
        while (m_position < m_bytes.size() && IsWhiteSpace(m_bytes[m_position]))
        {
            ++m_position;
        }
        const std::size_t begin = m_position;
        if (begin == m_bytes.size())
        {
            return {TokenKind::end, m_bytes.substr(begin)};
        }
        const auto at = [&](std::size_t i) { return i < m_bytes.size() ? m_bytes[i] : '\0'; };
        switch (at(begin))
        {
        case '%':
        {
            const std::size_t lineEnd = m_bytes.find_first_of("\r\n", begin);
            return Take(TokenKind::comment, lineEnd == std::string_view::npos ? m_bytes.size() : lineEnd);
        }
        case '(':
            return Take(TokenKind::string, EndOfParenthesised(begin));
        case '<':
            return at(begin + 1) == '<' ? Take(TokenKind::open, begin + 2)
                                        : Take(TokenKind::string, EndOfAngled(begin));
        case '>':
            if (at(begin + 1) != '>')
            {
                throw FormatError(begin, "\">\" closes nothing that was opened");
            }
            return Take(TokenKind::close, begin + 2);
        case ')':
            throw FormatError(begin, "\")\" closes no string: the parentheses of a string do not balance");
        case '[':
        case '{':
            return Take(TokenKind::open, begin + 1);
        case ']':
        case '}':
            return Take(TokenKind::close, begin + 1);
        case '/':
            return Take(TokenKind::literalName, EndOfRegular(begin + (at(begin + 1) == '/' ? 2 : 1)));
        default:
        {
            const std::size_t end = EndOfRegular(begin);
            const bool isNumber = NumberOf(m_bytes.substr(begin, end - begin)).has_value();
            return Take(isNumber ? TokenKind::number : TokenKind::executableName, end);
        }
        }
    }

    Token Scanner::Take(TokenKind kind, std::size_t end)
    {
        const Token token = {kind, m_bytes.substr(m_position, end - m_position)};
        m_position = end;
        return token;
    }

    std::size_t Scanner::EndOfParenthesised(std::size_t begin) const
    {
        std::size_t depth = 0;
        for (std::size_t i = begin; i < m_bytes.size(); ++i)
        {
            const char c = m_bytes[i];
            if (c == '\\')
            {
                ++i;
            }
            else if (c == '(')
            {
                ++depth;
            }
            else if (c == ')' && --depth == 0)
            {
                return i + 1;
            }
        }
        throw FormatError(begin, "string is not closed");
    }

    std::size_t Scanner::EndOfAngled(std::size_t begin) const
    {
        const bool base85 = m_bytes.substr(begin, 2) == "<~";
        const std::size_t end = m_bytes.find(base85 ? "~>" : ">", begin + (base85 ? 2 : 1));
        if (end == std::string_view::npos)
        {
            throw FormatError(begin, "string is not closed");
        }
        if (base85)
        {
            return end + 2;
        }
        for (std::size_t i = begin + 1; i < end; ++i)
        {
            if (DigitOf(m_bytes[i]) >= 16 && !IsWhiteSpace(m_bytes[i]))
            {
                throw FormatError(i, "hexadecimal string holds a character that is no digit");
            }
        }
        return end + 1;
    }

    std::size_t Scanner::EndOfRegular(std::size_t begin) const
    {
        std::size_t end = begin;
        while (end < m_bytes.size() && ClassOf(m_bytes[end]) == regular)
        {
            ++end;
        }
        return end;
    }

    std::optional<double> NumberOf(std::string_view text)
    {
        // The longest form that is worth reading: anything longer is a word.
        constexpr std::size_t longestNumber = 512;
        if (text.empty() || text.size() > longestNumber)
        {
            return std::nullopt;
        }
        const bool isSigned = text[0] == '+' || text[0] == '-';
        const std::string_view unsignedText = text.substr(isSigned ? 1 : 0);
        // Rules out the words that from_chars would read: inf and nan.
        if (unsignedText.empty() || (unsignedText[0] != '.' && DigitOf(unsignedText[0]) >= 10))
        {
            return std::nullopt;
        }
        double value = 0;
        const char* end = unsignedText.data() + unsignedText.size();
        const auto parsed = std::from_chars(unsignedText.data(), end, value);
        if (parsed.ec == std::errc() && parsed.ptr == end)
        {
            return text[0] == '-' ? -value : value;
        }
        return isSigned ? std::nullopt : RadixNumberOf(text);
    }

    std::optional<std::int64_t> IntegerOf(std::string_view text)
    {
        // Up to here every whole number has a double of its own.
        constexpr double greatest = 9007199254740992.0;
        const std::optional<double> value = NumberOf(text);
        if (!value || *value != std::floor(*value) || std::abs(*value) > greatest)
        {
            return std::nullopt;
        }
        return static_cast<std::int64_t>(*value);
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

    std::vector<Token> TokensOf(std::string_view text, std::size_t most)
    {
        std::vector<Token> tokens;
        Scanner scanner(text);
        try
        {
            for (Token token = scanner.Next(); token.kind != TokenKind::end; token = scanner.Next())
            {
                if (token.kind == TokenKind::comment)
                {
                    continue;
                }
                if (tokens.size() == most)
                {
                    return {};
                }
                tokens.push_back(token);
            }
        }
        catch (const FormatError&)
        {
            return {};
        }
        return tokens;
    }
}
