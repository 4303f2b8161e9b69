// One sheet of the job, as the host gave it, and its two sides.
#pragma once

#include "cip3output/CIP3SheetParameters.h"

#include <RasterFeedLib.h>

#include <cstdint>
#include <string>
#include <vector>

namespace Sheetvane
{
    /// The page of a TIFF and the sample of its pixels that are a separation, both from 1; or both 0, not chosen.
    struct SeparationImage
    {
        std::uint32_t page = 0;
        std::uint32_t channel = 0;
    };

    /// A side has a surface in the output exactly when its names list is not empty. Within a side, names and paths belong
    /// together by position; only a sheet whose AddSheet failed has more of one than of the other.
    struct SheetRecord
    {
        std::vector<std::string> frontSeparationNames;
        std::vector<std::string> backSeparationNames;
        std::vector<std::string> frontFilePaths; ///< local paths of TIFF files
        std::vector<std::string> backFilePaths;
        RasterOutput::CIP3SheetParameters parameters; ///< extents are set while a conversion runs
        RasterFeedOrientation frontOrientation = RasterFeedOrientation::Rotate0;
        RasterFeedOrientation backOrientation = RasterFeedOrientation::Rotate0;
        std::vector<SeparationImage> frontImages; ///< by position, as far as any was chosen
        std::vector<SeparationImage> backImages;
    };
}
