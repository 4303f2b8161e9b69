// What decoding an image will take, found before any of it is allocated. It stands apart because it is the guard against
// files that claim what they do not hold: every strip or tile lies inside the file, and the memory for it is bounded.
#pragma once

#include "rasterfeed/SeparationForm.h"

#include <cstddef>

namespace RasterFeed
{
    class TiffFile;

    /// Ways from the file to rows.
    enum class DecodeWay
    {
        Stored,    ///< uncompressed strips: the file's own bytes
        Scanlines, ///< line by line, from the top
        Strips,    ///< strip by strip, each as a whole, in any order
        Tiles      ///< a row of tiles at once, in any order
    };

    /// How an image is decoded.
    struct DecodePlan
    {
        DecodeWay way;
        std::size_t blockBytes; ///< what a strip or a row of tiles takes when decoded; 0 if none is kept
    };

    /// Chooses the way for an image of that form, whose rows are needed from the last stored one on if `fromBottom`. Throws Refusal if its data is not all there, or if decoding would take more
    /// than 256 MiB beyond its rows.
    DecodePlan PlanDecoding(const TiffFile& file, const SeparationForm& form, bool fromBottom);
}
