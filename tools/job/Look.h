// A look at a separation's TIFF as the job wants it: turned, and reduced.
#pragma once

#include "job/SeparationPlaces.h"

#include <RasterFeedLib.h>

namespace Jobs
{
    /// The same orientation, as the reader calls it.
    RasterFeedOrientation OrientationForReader(Orientation orientation);

    /// What the library is going to read at `place`, or why it does not. Throws std::bad_alloc only.
    RasterFeedDescription LookAt(const Job& job, const SeparationPlace& place, RasterFeedDepth depth);
}
