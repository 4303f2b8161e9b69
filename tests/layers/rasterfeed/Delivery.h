// What a reader delivers from a file in memory: the whole road of a host, from RasterFeedInit to RasterFeedEnd.
#pragma once

#include "tests/layers/rasterfeed/MemoryFile.h"

#include <string>
#include <vector>

namespace RasterFeedTest
{
    /// How far a reader came, and what it gave.
    struct Delivery
    {
        enum class End
        {
            Complete,     ///< every line was delivered
            InitFailed,   ///< null from RasterFeedInit
            HeaderFailed, ///< non-zero from RasterFeedHeader
            LineFailed,   ///< non-zero from RasterFeedLine
            Thrown        ///< a HostFailure came out
        };
        End end;
        std::string thrownFrom; ///< the callback whose HostFailure came out
        RasterFeedImageHeader header;
        double resolution; ///< as a host computes it from the header
        std::vector<std::string> lines;

        bool IsComplete() const { return end == End::Complete; }
    };

    /// Reads `tiff` to its end or first failure; the reader is ended in any case.
    Delivery Deliver(const std::string& tiff, const HostFaults& faults = {});

    /// The same of the view that `selection` describes.
    Delivery DeliverView(const std::string& tiff, const RasterFeedSelection& selection, const HostFaults& faults = {});

    /// The same of the views of several channels, whose lines come one channel after the other.
    Delivery DeliverChannels(
        const std::string& tiff, const RasterFeedSelection& selection, const std::vector<std::uint32_t>& channels);

    /// What the probe says of `tiff` in that view. The file is written to a temporary folder for this.
    RasterFeedDescription Describe(
        const std::string& tiff, const RasterFeedSelection& selection, RasterFeedDepth depth = RasterFeedDepth::Lines);

    /// Why the probe refuses `tiff`, without the file's name; empty if it accepts it. The file is written to a temporary
    /// folder for this.
    std::string ReasonFor(
        const std::string& tiff, RasterFeedDepth depth = RasterFeedDepth::Lines,
        const RasterFeedSelection& selection = {});

    /// The inks of `tiff`, which is written to a temporary folder for this; the reason is without the file's name.
    RasterFeedInkList InksOf(const std::string& tiff);
}
