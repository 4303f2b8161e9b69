// One table of character classes and one rule per first character.
#include "ppf/Scanner.h"

#include <array>

#include "ppf/Failure.h"
#include "ppf/Number.h"

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

    }

    bool IsWhiteSpace(char c)
    {
        return ClassOf(c) == whiteSpace;
    }

    std::string_view Trimmed(std::string_view text)
    {
        while (!text.empty() && IsWhiteSpace(text.front()))
        {
            text.remove_prefix(1);
        }
        while (!text.empty() && IsWhiteSpace(text.back()))
        {
            text.remove_suffix(1);
        }
        return text;
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
