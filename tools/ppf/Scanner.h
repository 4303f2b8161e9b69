// PostScript's syntax: bytes to tokens. Apart from the document reader because it knows nothing of the sections and
// entries of a print production file; what it takes for a token is PostScript's rule alone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace Ppf
{
    enum class TokenKind
    {
        End,            ///< after the last token
        Comment,        ///< from "%" to the end of its line, without it
        Number,         ///< an integer, a real or a radix number
        LiteralName,    ///< with its slash, or both for an immediately evaluated one
        ExecutableName, ///< a bare word
        String,         ///< "(...)", "<...>" or "<~...~>", with its delimiters
        Open,           ///< "[", "{" or "<<"
        Close           ///< "]", "}" or ">>"
    };

    struct Token
    {
        TokenKind kind;
        /// The token's own bytes in the file.
        std::string_view text;
    };

    /// White space of PostScript: NUL, TAB, LF, FF, CR and blank.
    bool IsWhiteSpace(char c);

    /// The text without white space around it.
    std::string_view Trimmed(std::string_view text);

    inline bool StartsWith(std::string_view text, std::string_view start)
    {
        return text.substr(0, start.size()) == start;
    }

    /// Reads tokens from a range of bytes, one per Next. Holds a reference to the bytes only.
    class Scanner
    {
    public:
        /// Begins at an offset into the bytes.
        explicit Scanner(std::string_view theBytes, std::uint64_t begin = 0);

        /// The next token. Throws FormatError at a string that is not closed, a character that a hexadecimal string
        /// cannot hold, and a closing delimiter of a string that was not opened.
        Token Next();

        /// Offset after the last token.
        std::uint64_t Position() const { return position; }
        void MoveTo(std::uint64_t thePosition) { position = static_cast<std::size_t>(thePosition); }

    private:
        std::size_t EndOfParenthesised(std::size_t begin) const;
        std::size_t EndOfAngled(std::size_t begin) const;
        std::size_t EndOfRegular(std::size_t begin) const;
        Token Take(TokenKind kind, std::size_t end);

        std::string_view bytes;
        std::size_t position;
    };

    /// The tokens of a value, comments left out; an empty list if the text is not a sequence of tokens or holds more than
    /// `most`.
    std::vector<Token> TokensOf(std::string_view text, std::size_t most);
}
