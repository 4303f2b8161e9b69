// A preview measured for output: coverage and zones of its inks where it can be decoded, what is wrong where it cannot.
// Every form of output takes its numbers from here, shows what it can and goes on.
#pragma once

#include "ppf/Document.h"
#include "ppfinfo/Zones.h"

#include <optional>
#include <vector>

namespace PpfInfo
{
    /// One component of a preview. Per cents of full ink.
    struct MeasuredInk
    {
        double coverage;
        /// As many as there are zones.
        std::vector<double> zones;
    };

    struct MeasuredPreview
    {
        Zones zones;
        /// One per component; empty if the preview cannot be decoded.
        std::vector<MeasuredInk> inks;
        /// Bytes that the data holds after the last row.
        std::uint64_t excess = 0;
        /// Why it cannot be decoded, or why it has no zones.
        std::vector<Ppf::Finding> findings;
    };

    /// Decodes a preview and sums its ink. No zones without a choice that is given.
    MeasuredPreview
    MeasurePreview(const Ppf::Document& document, const Ppf::Preview& preview, const ZoneChoice& choice);

    /// Bytes of preview data that were read by now, each as often as that was done, for whoever shows how far a run is.
    std::uint64_t DataBytesRead() noexcept;
    void CountDataRead(const Ppf::Preview& preview) noexcept;

    /// Keeps the finding that stands first in the file.
    void KeepFirst(std::optional<Ppf::Finding>& first, const std::optional<Ppf::Finding>& other);
    void KeepFirst(std::optional<Ppf::Finding>& first, const std::vector<Ppf::Finding>& others);
}
