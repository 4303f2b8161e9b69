// The search for a "def" that belongs to a key, past whatever brackets hold.
#include "ppf/Definition.h"

#include <string>

#include "ppf/Keywords.h"

namespace ppf
{
    namespace
    {
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

            /// False if the token is a closing delimiter that does not match. Throws FormatError if it nests too deeply.
            bool Take(const Token& token, std::uint64_t offset)
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
                        return false;
                    }
                    m_awaited.pop_back();
                }
                return true;
            }

        private:
            std::string m_awaited;
        };
    }

    Definition TryDefinition(Scanner& scanner, const Token& key, std::string_view file)
    {
        Nesting nesting;
        std::string_view first;
        std::string_view last = key.text.substr(key.text.size());
        Token token = scanner.Next();
        for (;; token = scanner.Next())
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
                return {std::nullopt, token};
            }
            if (token.kind != TokenKind::comment)
            {
                if (!nesting.Take(token, static_cast<std::uint64_t>(token.text.data() - file.data())))
                {
                    return {std::nullopt, token};
                }
                first = first.data() == nullptr ? token.text : first;
                last = token.text;
            }
        }
        const char* const begin = first.data() == nullptr ? last.data() : first.data();
        const char* const end = last.data() + last.size();
        const std::size_t slashes = StartsWith(key.text, "//") ? 2 : 1;
        return {Entry{key.text.substr(slashes), std::string_view(begin, static_cast<std::size_t>(end - begin))}, token};
    }

    Entry ReadDefinition(Scanner& scanner, const Token& key, std::string_view file)
    {
        const auto offsetOf = [&](const Token& token)
        { return static_cast<std::uint64_t>(token.text.data() - file.data()); };
        const Definition definition = TryDefinition(scanner, key, file);
        if (!definition.entry && definition.last.kind == TokenKind::close)
        {
            throw FormatError(offsetOf(definition.last), "\"" + Shown(definition.last.text) + "\" closes nothing here");
        }
        if (!definition.entry)
        {
            throw FormatError(offsetOf(key), "definition of " + Shown(key.text) + " is not closed by \"def\"");
        }
        return *definition.entry;
    }
}
