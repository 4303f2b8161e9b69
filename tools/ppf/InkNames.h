// Which ink each preview image shows. Apart from the document reader because it can only be said once a sheet is read:
// the list of separation names may stand before the previews or after them, with the surface or with its sheet.
#pragma once

#include "ppf/Document.h"

#include <cstddef>

namespace Ppf
{
    /// Fills `separationNames` of every surface and `inks` of every preview, in the order of the lists. A preview that
    /// the lists do not reach gets the name of a process ink, if it has all four, or of its place. A list that is not an
    /// array of names becomes the document's damage if it has none yet. The names of all surfaces together take no
    /// more than `memory` bytes, those of one list are no more than `mostSeparations`.
    void AssignInkNames(Document& document, std::size_t memory, std::size_t mostSeparations);
}
