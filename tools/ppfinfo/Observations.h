// What deserves a look although a file can be read: the findings of the check, and what is well formed but unusual.
#pragma once

#include "ppf/Document.h"
#include "ppfinfo/InkMeasure.h"

#include <vector>

namespace PpfInfo
{
    /// What the structure shows, in the order of the file. The document's damage is not part of it.
    std::vector<Ppf::Finding> Observations(const Ppf::Document& document);

    /// What decoding one preview shows.
    std::vector<Ppf::Finding> Observations(const Ppf::Preview& preview, const InkMeasure& measure);
}
