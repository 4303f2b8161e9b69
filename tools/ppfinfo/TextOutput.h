// What a file holds, for people: sheets, sides and inks at a glance, and what is unusual about them.
#pragma once

#include <optional>
#include <ostream>
#include <string>

#include "ppf/Document.h"

namespace ppfinfo
{
    /// Writes the summary. Returns the first fault among the previews.
    std::optional<ppf::Finding>
    WriteText(const std::string& fileName, const ppf::Document& document, std::ostream& out);
}
