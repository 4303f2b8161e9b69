// One sheet of the job, as the host gave it, and its two sides.
#pragma once

#include "cip3output/CIP3SheetParameters.h"

#include <RasterFeedLib.h>

#include <string>
#include <vector>

namespace Sheetvane
{
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
    };
}
