#include "ppf/Scanner.h"

#include "ppf/Failure.h"
#include "ppf/Number.h"

#include <array>

namespace Ppf
{
    namespace
    {
        enum CharacterClass : std::uint8_t
        {
            Regular,
            WhiteSpace,
            Delimiter
        };

        constexpr std::array<CharacterClass, 256> MakeClasses()
        {
            std::array<CharacterClass, 256> classes = {};
            for (const char c : std::string_view("\0\t\n\f\r ", 6))
            {
                classes[static_cast<unsigned char>(c)] = WhiteSpace;
            }
            for (const char c : std::string_view("()<>[]{}/%"))
            {
                classes[static_cast<unsigned char>(c)] = Delimiter;
            }
            return classes;
        }

        constexpr std::array<CharacterClass, 256> Classes = MakeClasses();

        CharacterClass ClassOf(char c)
        {
            return Classes[static_cast<unsigned char>(c)];
        }

    }

    bool IsWhiteSpace(char c)
    {
        return ClassOf(c) == WhiteSpace;
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

    Scanner::Scanner(std::string_view theBytes, std::uint64_t begin)
        : bytes(theBytes)
        , position(static_cast<std::size_t>(begin))
    {
    }

    Token Scanner::Next()
    {
        while (position < bytes.size() && IsWhiteSpace(bytes[position]))
        {
            ++position;
        }
        const std::size_t begin = position;
        if (begin == bytes.size())
        {
            return {TokenKind::End, bytes.substr(begin)};
        }
        const auto at = [&](std::size_t i) { return i < bytes.size() ? bytes[i] : '\0'; };
        switch (at(begin))
        {
        case '%':
        {
            const std::size_t lineEnd = bytes.find_first_of("\r\n", begin);
            return Take(TokenKind::Comment, lineEnd == std::string_view::npos ? bytes.size() : lineEnd);
        }
        case '(':
            return Take(TokenKind::String, EndOfParenthesised(begin));
        case '<':
            return at(begin + 1) == '<' ? Take(TokenKind::Open, begin + 2)
                                        : Take(TokenKind::String, EndOfAngled(begin));
        case '>':
            if (at(begin + 1) != '>')
            {
                throw FormatError(begin, "\">\" closes nothing that was opened");
            }
            return Take(TokenKind::Close, begin + 2);
        case ')':
            throw FormatError(begin, "\")\" closes no string: the parentheses of a string do not balance");
        case '[':
        case '{':
            return Take(TokenKind::Open, begin + 1);
        case ']':
        case '}':
            return Take(TokenKind::Close, begin + 1);
        case '/':
            return Take(TokenKind::LiteralName, EndOfRegular(begin + (at(begin + 1) == '/' ? 2 : 1)));
        default:
        {
            const std::size_t end = EndOfRegular(begin);
            const bool isNumber = NumberOf(bytes.substr(begin, end - begin)).has_value();
            return Take(isNumber ? TokenKind::Number : TokenKind::ExecutableName, end);
        }
        }
    }

    Token Scanner::Take(TokenKind kind, std::size_t end)
    {
        const Token token = {kind, bytes.substr(position, end - position)};
        position = end;
        return token;
    }

    std::size_t Scanner::EndOfParenthesised(std::size_t begin) const
    {
        std::size_t depth = 0;
        for (std::size_t i = begin; i < bytes.size(); ++i)
        {
            const char c = bytes[i];
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
        const bool base85 = bytes.substr(begin, 2) == "<~";
        const std::size_t end = bytes.find(base85 ? "~>" : ">", begin + (base85 ? 2 : 1));
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
            if (DigitOf(bytes[i]) >= 16 && !IsWhiteSpace(bytes[i]))
            {
                throw FormatError(i, "hexadecimal string holds a character that is not a digit");
            }
        }
        return end + 1;
    }

    std::size_t Scanner::EndOfRegular(std::size_t begin) const
    {
        std::size_t end = begin;
        while (end < bytes.size() && ClassOf(bytes[end]) == Regular)
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
            for (Token token = scanner.Next(); token.kind != TokenKind::End; token = scanner.Next())
            {
                if (token.kind == TokenKind::Comment)
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
