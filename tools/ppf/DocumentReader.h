// From the bytes of a file to its document. Apart from the records because it alone knows how sections nest and what
// a damaged file still gives away.
#pragma once

#include <string_view>

#include "ppf/Document.h"

namespace ppf
{
    /// Reads a whole file. The first fault that reading cannot step over ends it and is the document's `damage`; what
    /// stands before it is in the document. The bytes have to outlive the document, whose texts and data point into
    /// them. Takes at most a few tens of MiB of memory, whatever the file holds: one that has more sections and
    /// entries than that is taken as damaged.
    Document ReadDocument(std::string_view bytes);
}
