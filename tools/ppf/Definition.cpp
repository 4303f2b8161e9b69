#include "ppf/Definition.h"

#include "ppf/Keywords.h"

#include <string>

namespace Ppf
{
    namespace
    {
        bool IsSectionWord(const Token& token)
        {
            return token.kind == TokenKind::ExecutableName &&
                   (StartsWith(token.text, Word::Begin) || StartsWith(token.text, Word::End) ||
                    token.text == Word::Image);
        }

        /// The closing delimiters that a value still awaits, the next one last.
        class Nesting
        {
        public:
            bool IsOpen() const { return !awaited.empty(); }
            bool IsInProcedure() const { return awaited.find('}') != std::string::npos; }

            /// False if the token is a closing delimiter that does not match. Throws FormatError if it nests too deeply.
            bool Take(const Token& token, std::uint64_t offset)
            {
                if (token.kind == TokenKind::Open)
                {
                    awaited += token.text == "[" ? ']' : token.text == "{" ? '}' : '>';
                    if (awaited.size() > DeepestNesting)
                    {
                        throw FormatError(offset, "value is nested too deeply");
                    }
                }
                else if (token.kind == TokenKind::Close)
                {
                    if (awaited.empty() || awaited.back() != token.text[0])
                    {
                        return false;
                    }
                    awaited.pop_back();
                }
                return true;
            }

        private:
            std::string awaited;
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
            const bool isDef = token.kind == TokenKind::ExecutableName && token.text == Word::Def;
            if (isDef && !nesting.IsOpen())
            {
                break;
            }
            // The key of another entry cannot belong to a value that has begun: that value lacks its def.
            const bool isNextKey = token.kind == TokenKind::LiteralName && StartsWith(token.text, Key::Start) &&
                                   first.data() != nullptr && !nesting.IsOpen();
            if (token.kind == TokenKind::End || isNextKey || (IsSectionWord(token) && !nesting.IsInProcedure()))
            {
                return {std::nullopt, token};
            }
            if (token.kind != TokenKind::Comment)
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
        if (!definition.entry && definition.last.kind == TokenKind::Close)
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
