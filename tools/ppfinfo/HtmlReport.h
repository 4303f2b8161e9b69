// What a file will do to the ink keys, as one page for a browser: pictures, zones and entries, nothing from elsewhere.
#pragma once

#include "ppf/Document.h"
#include "ppfinfo/Zones.h"

#include <optional>
#include <ostream>
#include <string>

namespace PpfInfo
{
    /// Writes the page. Without a choice, zones are 32.5 mm wide where the resolution is known. Returns the first
    /// finding among the previews, each of which the page shows in its place.
    std::optional<Ppf::Finding> WriteHtmlReport(
        const std::string& fileName, const Ppf::Document& document, const ZoneChoice& zones, std::ostream& out);
}
