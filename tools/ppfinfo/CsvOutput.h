// Ink zones for spreadsheets, as RFC 4180 has it.
#pragma once

#include "ppf/Document.h"
#include "ppfinfo/Zones.h"

#include <optional>
#include <ostream>

namespace PpfInfo
{
    /// Writes a line per zone of each separation; without a choice that is given, zones are of the usual width. A separation
    /// that cannot be decoded has lines without coverage. Returns the first finding among the previews.
    std::optional<Ppf::Finding> WriteCsv(const Ppf::Document& document, const ZoneChoice& choice, std::ostream& out);
}
