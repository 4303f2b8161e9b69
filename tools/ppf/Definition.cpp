#include "ppf/Definition.h"

#include <string>

#include "ppf/Keywords.h"

namespace ppf
{
    namespace
    {
        constexpr std::size_t deepestNesting = 100;
        /// What a message repeats of a key, in bytes.
        constexpr std::size_t longestShown = 100;

        bool StartsWith(std::string_view text, std::string_view start)
        {
            return text.substr(0, start.size()) == start;
        }

        bool IsSectionWord(const Token& token)
        {
            return token.kind == TokenKind::executableName &&
                   (StartsWith(token.text, word::begin) || StartsWith(token.text, word::end) ||
                    token.text == word::image);
        }

        /// The closing delimiters that a value still awaits, the next one last.
        class Nesting
        {
        public:
            bool IsOpen() const { return !m_awaited.empty(); }
            bool IsInProcedure() const { return m_awaited.find('}') != std::string::npos; }

            /// Throws FormatError at the offset of a delimiter that does not match or nests too deeply.
            void Take(const Token& token, std::uint64_t offset)
            {
                if (token.kind == TokenKind::open)
                {
                    m_awaited += token.text == "[" ? ']' : token.text == "{" ? '}' : '>';
                    if (m_awaited.size() > deepestNesting)
                    {
                        throw FormatError(offset, "value is nested too deeply");
                    }
                }
                else if (token.kind == TokenKind::close)
                {
                    if (m_awaited.empty() || m_awaited.back() != token.text[0])
                    {
                        throw FormatError(offset, "\"" + std::string(token.text) + "\" closes nothing here");
                    }
                    m_awaited.pop_back();
                }
            }

        private:
            std::string m_awaited;
        };
    }

    Entry ReadDefinition(Scanner& scanner, const Token& key, std::string_view file)
    {
        const auto offsetOf = [&](const Token& token)
        { return static_cast<std::uint64_t>(token.text.data() - file.data()); };
        Nesting nesting;
        std::string_view first;
        std::string_view last = key.text.substr(key.text.size());
        for (Token token = scanner.Next();; token = scanner.Next())
        {
            const bool isDef = token.kind == TokenKind::executableName && token.text == word::def;
            if (isDef && !nesting.IsOpen())
            {
                break;
            }
            // The key of another entry cannot belong to a value that has begun: that value lacks its def.
            const bool isNextKey = token.kind == TokenKind::literalName && StartsWith(token.text, key::start) &&
                                   first.data() != nullptr && !nesting.IsOpen();
            if (token.kind == TokenKind::end || isNextKey || (IsSectionWord(token) && !nesting.IsInProcedure()))
            {
                throw FormatError(
                    offsetOf(key),
                    "definition of " + std::string(key.text.substr(0, longestShown)) + " is not closed by \"def\"");
            }
            if (token.kind != TokenKind::comment)
            {
                nesting.Take(token, offsetOf(token));
                first = first.data() == nullptr ? token.text : first;
                last = token.text;
            }
        }
        const char* const begin = first.data() == nullptr ? last.data() : first.data();
        const char* const end = last.data() + last.size();
        const std::size_t slashes = StartsWith(key.text, "//") ? 2 : 1;
        return {key.text.substr(slashes), std::string_view(begin, static_cast<std::size_t>(end - begin))};
    }
}
