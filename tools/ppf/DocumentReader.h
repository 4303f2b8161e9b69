// From the bytes of a file to its document. Apart from the records because it alone knows how sections nest and what
// a damaged file still gives away.
#pragma once

#include "ppf/Document.h"

#include <cstddef>
#include <limits>
#include <string_view>

namespace Ppf
{
    /// What a file may ask of its reader.
    struct Limits
    {
        /// What the records take, in bytes; those of one sheet take a third of it at most.
        std::size_t memory;
        /// Bytes of a key or value that is kept: PostScript's longest string, 65535 bytes, in its parentheses.
        std::size_t longestValue;
        /// Names in a list of separations.
        std::size_t mostSeparations;
    };

    /// Enough for a job of more than ten thousand sheets of four inks.
    constexpr Limits UsualLimits = {48u << 20, 65535 + 2, 1000};
    /// For a file that the program has made itself.
    constexpr Limits NoLimits = {
        std::numeric_limits<std::size_t>::max(), std::numeric_limits<std::size_t>::max(),
        std::numeric_limits<std::size_t>::max() / 2};

    /// Reads a whole file. The first thing wrong that reading cannot step over ends it and is the document's `damage`; what
    /// stands before it is in the document. The bytes have to outlive the document, whose texts and data point into
    /// them. A file that has more sections, entries or names than the limits allow is taken as damaged there; a value
    /// that is too long is kept as an empty one, with a remark.
    Document ReadDocument(std::string_view bytes, const Limits& limits = UsualLimits);
}
