// The names of sheets and sides, in the same words wherever a person meets them.
#pragma once

#include "ppf/Document.h"

#include <ostream>
#include <string>
#include <vector>

namespace PpfInfo
{
    /// "Sheet 2, "Cover"", by the sheet's position from 0. Without a name: "Sheet 2".
    std::string SheetHeading(const Ppf::Sheet& sheet, std::size_t position);

    /// "1890 x 1260 pixels, 960.1 x 640.1 mm, 50 ppi", as the preview lies on the sheet.
    std::string SizeText(const Ppf::Preview& preview);

    /// "RunLengthDecode, ASCII85Decode".
    std::string FilterText(const Ppf::Preview& preview);

    /// "byte 1230: ...", as all findings are said.
    std::string FindingText(const Ppf::Finding& finding);

    /// A heading after an empty line, and a line for each finding; nothing without findings.
    void WriteFindings(const std::string& heading, const std::vector<Ppf::Finding>& findings, std::ostream& out);
}
