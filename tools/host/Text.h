// Text for a person: names in messages, and messages that stay on one line of sensible length whatever a name or a path
// holds.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Host
{
    /// A character of UTF-8.
    struct Character
    {
        char32_t value;
        std::size_t bytes; ///< 0 if the text does not begin with well-formed UTF-8
    };

    /// The character at the start of `text`, which is not empty. Well-formed is what Unicode says: no byte out of place,
    /// no form longer than needed, no surrogate, nothing above U+10FFFF.
    Character FirstCharacter(std::string_view text);

    /// Whether `text` is UTF-8 throughout.
    bool IsUtf8(std::string_view text);

    /// `text` with everything that a terminal would not show as itself written as \xNN per byte: control characters, line
    /// and paragraph separators, and bytes that are not UTF-8. Applied twice it changes nothing more.
    std::string OneLine(std::string_view text);

    /// `text`, or of a longer one than `most` bytes its begin and its end with " ... " between, cut where characters are:
    /// not more than `most` bytes of UTF-8.
    std::string Shortened(std::string_view text, std::size_t most);

    /// `text` as one line, of sensible length, between double quotes: a name for a message.
    std::string Quoted(std::string_view text);

    /// What the system says of an errno value: "No such file or directory".
    std::string SystemText(int problem);
}
