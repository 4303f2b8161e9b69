// "/key value def": where such an entry ends. Apart from the document reader because a value can be any PostScript
// object, nested as it likes, and only here is known where it stops.
#pragma once

#include "ppf/Document.h"
#include "ppf/Scanner.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace Ppf
{
    /// Sections within sections and brackets within brackets that no file needs more of.
    constexpr std::size_t DeepestNesting = 100;

    /// What stands after a name.
    struct Definition
    {
        /// Nothing if the name is not a key of an entry.
        std::optional<Entry> entry;
        /// The "def", or the token that no value can hold: the next entry's key, a section word, a delimiter without its
        /// opening one, or the end of the file.
        Token last;
    };

    /// Reads up to the "def" that makes the name which the scanner has just given the key of an entry, or to the token
    /// that shows that it is not one. Throws FormatError if brackets nest too deeply.
    Definition TryDefinition(Scanner& scanner, const Token& key, std::string_view file);

    /// Reads up to the "def" of the entry whose key the scanner has just given, and returns the entry. Throws
    /// FormatError if it has none before the next entry or section word, or if brackets do not match.
    Entry ReadDefinition(Scanner& scanner, const Token& key, std::string_view file);
}
