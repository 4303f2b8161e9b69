// What a file holds, for programs: the JSON form of the document.
#pragma once

#include <optional>
#include <ostream>

#include "ppf/Document.h"
#include "ppfinfo/ZoneChoice.h"

namespace ppfinfo
{
    /// Writes the document sheet by sheet. A separation that cannot be decoded has null as its coverage and no zones.
    /// Returns the first fault among the previews.
    std::optional<ppf::Finding> WriteJson(const ppf::Document& document, const ZoneChoice& zones, std::ostream& out);
}
