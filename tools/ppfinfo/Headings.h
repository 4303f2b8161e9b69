// The names of sheets and sides, in the same words wherever a person meets them.
#pragma once

#include <string>

#include "ppf/Document.h"

namespace ppfinfo
{
    /// "Sheet 2, "Cover"", by the sheet's position from 0. Without a name: "Sheet 2".
    std::string SheetHeading(const ppf::Sheet& sheet, std::size_t position);

    /// "1890 x 1260 pixels, 960.1 x 640.1 mm, 50 ppi", as the preview lies on the sheet.
    std::string SizeText(const ppf::Preview& preview);

    /// "RunLengthDecode, ASCII85Decode".
    std::string FilterText(const ppf::Preview& preview);
}
