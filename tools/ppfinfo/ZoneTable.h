// Ink zones for people: what the ink keys of a press get, as a table per side.
#pragma once

#include "ppf/Document.h"
#include "ppfinfo/Zones.h"

#include <optional>
#include <ostream>

namespace PpfInfo
{
    /// Writes a row per zone and a column per ink. Returns the first finding among the previews; their columns are
    /// empty. A side that has no zones for any of its previews has a heading alone.
    std::optional<Ppf::Finding>
    WriteZoneTable(const Ppf::Document& document, const ZoneChoice& zones, std::ostream& out);
}
