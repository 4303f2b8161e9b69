// What deserves a look although a file can be read: the findings of the check, and what is well formed but unusual.
#pragma once

#include <vector>

#include "ppf/Document.h"
#include "ppfinfo/InkMeasure.h"

namespace ppfinfo
{
    /// What the structure shows, in the order of the file. The document's damage is not part of it.
    std::vector<ppf::Finding> Observations(const ppf::Document& document);

    /// What decoding one preview shows.
    std::vector<ppf::Finding> Observations(const ppf::Preview& preview, const InkMeasure& measure);
}
