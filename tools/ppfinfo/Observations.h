// What deserves a look although a file can be read: the findings of the check, and what is well formed but unusual.
#pragma once

#include "ppf/Document.h"
#include "ppfinfo/MeasuredPreview.h"

#include <vector>

namespace PpfInfo
{
    /// What the structure shows, in the order of the file. The document's damage is not part of it.
    std::vector<Ppf::Finding> Observations(const Ppf::Document& document);

    /// What measuring one preview shows, what is wrong with it first.
    std::vector<Ppf::Finding> Observations(const Ppf::Preview& preview, const MeasuredPreview& measured);
}
