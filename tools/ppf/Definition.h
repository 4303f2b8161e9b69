// "/key value def": where such an entry ends. Apart from the document reader because a value can be any PostScript
// object, nested as it likes, and only here is known where it stops.
#pragma once

#include <string_view>

#include "ppf/Document.h"
#include "ppf/Scanner.h"

namespace ppf
{
    /// Reads up to the "def" of the entry whose key the scanner has just given, and returns the entry. Throws
    /// FormatError if it has none before the next entry or section word, or if brackets do not match.
    Entry ReadDefinition(Scanner& scanner, const Token& key, std::string_view file);
}
