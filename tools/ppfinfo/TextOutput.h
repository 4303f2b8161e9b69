// What a file holds, for people: sheets, sides and inks at a glance, and what is unusual about them.
#pragma once

#include "ppf/Document.h"

#include <optional>
#include <ostream>
#include <string>

namespace PpfInfo
{
    /// Writes the summary. Returns the first finding among the previews.
    std::optional<Ppf::Finding>
    WriteText(const std::string& fileName, const Ppf::Document& document, std::ostream& out);
}
