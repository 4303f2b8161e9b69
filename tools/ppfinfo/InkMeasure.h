// A preview measured for output: its inks where it can be decoded, its fault where it cannot. Every form of output
// shows what it can and goes on.
#pragma once

#include <optional>
#include <vector>

#include "ppf/Document.h"
#include "ppf/InkColumns.h"

namespace ppfinfo
{
    struct InkMeasure
    {
        /// One per component; empty if the preview cannot be decoded.
        std::vector<ppf::InkColumns> inks;
        std::uint64_t excess = 0;
        std::optional<ppf::Finding> fault;
    };

    InkMeasure MeasureInks(const ppf::Document& document, const ppf::Preview& preview);

    /// Keeps the fault that stands first in the file.
    void KeepFirst(std::optional<ppf::Finding>& first, const std::optional<ppf::Finding>& other);
}
