// What a file holds, for programs: the JSON form of the document.
#pragma once

#include "ppf/Document.h"
#include "ppfinfo/Zones.h"

#include <optional>
#include <ostream>

namespace PpfInfo
{
    /// Writes the document sheet by sheet. A separation that cannot be decoded has null as its coverage and no zones.
    /// Returns the first finding among the previews.
    std::optional<Ppf::Finding> WriteJson(const Ppf::Document& document, const ZoneChoice& zones, std::ostream& out);
}
