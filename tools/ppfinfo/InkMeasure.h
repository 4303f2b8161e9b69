// A preview measured for output: its inks where it can be decoded, its finding where it cannot. Every form of output
// shows what it can and goes on.
#pragma once

#include "ppf/Document.h"
#include "ppf/InkColumns.h"

#include <optional>
#include <vector>

namespace PpfInfo
{
    struct InkMeasure
    {
        /// One per component; empty if the preview cannot be decoded.
        std::vector<Ppf::InkColumns> inks;
        std::uint64_t excess = 0;
        std::optional<Ppf::Finding> finding;
    };

    InkMeasure MeasureInks(const Ppf::Document& document, const Ppf::Preview& preview);

    /// Keeps the finding that stands first in the file.
    void KeepFirst(std::optional<Ppf::Finding>& first, const std::optional<Ppf::Finding>& other);
}
