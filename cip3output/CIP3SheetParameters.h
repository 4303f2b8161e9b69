// What a client says of one sheet before its surfaces.
#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace RasterOutput
{
    /// Unit of a sheet's extents. Any other value is written as an empty word.
    enum class CIP3Units : std::uint32_t
    {
        Millimetre = 0,
        Centimetre = 1,
        Inch = 2,
        Point = 3
    };

    /// Parameters of one sheet. All strings are byte strings and go into the document unchanged: what would not be
    /// sound PostScript inside parentheses is the client's affair.
    struct CIP3SheetParameters
    {
        /// Name of the job; not empty in a valid sheet.
        std::string jobName;
        /// Name of the sheet, 214 bytes at most. May be empty in a document of one sheet.
        std::string sheetName;
        /// Unit of both extents.
        CIP3Units units = CIP3Units::Point;
        /// Width of the sheet in `units`; above 0 in a valid sheet.
        double extentX = 0.0;
        /// Height of the sheet in `units`; above 0 in a valid sheet.
        double extentY = 0.0;
        /// Further entries of the sheet's section: key without its slash, and PostScript text. An entry
        /// "CIP3AdmPSExtent" that is not empty is written in place of the extents above.
        std::map<std::string, std::string> optionalParameters;
    };
}
