#include "job/Look.h"

namespace Jobs
{
    namespace
    {
        using Converter = Sheetvane::SheetvaneConverter;
        static_assert(
            static_cast<int>(RasterFeedOrientation::Rotate90) == Converter::Rotate90 &&
            static_cast<int>(RasterFeedOrientation::Flip270) == Converter::Flip270);
    }

    RasterFeedOrientation OrientationForReader(Orientation orientation)
    {
        return static_cast<RasterFeedOrientation>(orientation);
    }

    RasterFeedDescription LookAt(const Job& job, const SeparationPlace& place, RasterFeedDepth depth)
    {
        const Sheet& sheet = job.sheets[place.sheetIndex];
        RasterFeedSelection selection;
        selection.resolution = job.reduction.resolution;
        selection.reduceAbove = job.reduction.onlyAbove;
        selection.inputResolution = job.inputResolution;
        selection.orientation =
            OrientationForReader(place.surface == Surface::Front ? sheet.frontOrientation : sheet.backOrientation);
        selection.page = place.separation->page;
        selection.channel = place.separation->channel;
        return RasterFeedProbe(place.separation->file, depth, selection);
    }
}
