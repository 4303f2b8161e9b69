// From the bytes of a file to its document. Apart from the records because it alone knows how sections nest and what
// a damaged file still gives away.
#pragma once

#include "ppf/Document.h"

#include <cstddef>
#include <limits>
#include <string_view>

namespace Ppf
{
    /// Enough for a job of more than ten thousand sheets of four inks.
    constexpr std::size_t UsualMemory = 48u << 20;
    /// For a file that the program has made itself.
    constexpr std::size_t AnyMemory = std::numeric_limits<std::size_t>::max();

    /// Reads a whole file. The first fault that reading cannot step over ends it and is the document's `damage`; what
    /// stands before it is in the document. The bytes have to outlive the document, whose texts and data point into
    /// them. The records take at most `memory` bytes, those of one sheet a third of it, whatever the file holds: one
    /// that has more sections and entries than that is taken as damaged.
    Document ReadDocument(std::string_view bytes, std::size_t memory = UsualMemory);
}
