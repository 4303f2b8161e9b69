// Which file holds which spot colour. Ghostscript names the files after the colours, but changes what a file's name may not
// hold, so that the colour's name is what it prints, and the file's name only says which of the page's colours it is.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Pdf2Ppf
{
    /// The file of each of a page's spot colours, in the order of `names`, as Ghostscript prints them. `parts` are what the
    /// files' names hold of the colours' names. None if that does not fit one to one.
    std::optional<std::vector<std::string>>
    PartsOfSpots(const std::vector<std::string>& names, std::vector<std::string> parts);
}
