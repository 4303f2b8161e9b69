#include "rasterfeed/View.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace RasterFeed
{
    namespace
    {
        void Reduce(ViewSide& side, double resolution)
        {
            side.pixelsPerCell = side.resolution / resolution;
            side.cells = static_cast<std::uint32_t>(std::max(1.0, std::floor(side.pixels / side.pixelsPerCell + 0.5)));
        }
    }

    bool IsSelection(const RasterFeedSelection& selection)
    {
        for (const double number : {selection.resolution, selection.reduceAbove, selection.inputResolution})
        {
            if (!std::isfinite(number) || number < 0)
            {
                return false;
            }
        }
        return selection.orientation >= RasterFeedOrientation::Rotate0 &&
               selection.orientation <= RasterFeedOrientation::Flip270;
    }

    View ChooseView(const SeparationForm& form, const RasterFeedSelection& selection)
    {
        View view = {};
        view.turn = Combine(form.upright, TurnOf(selection.orientation));
        view.across = {form.width, form.resolution, form.width, 1};
        view.down = {form.height, form.resolutionDown, form.height, 1};
        if (view.turn.isTransposed)
        {
            std::swap(view.across, view.down);
        }
        if (selection.inputResolution > 0)
        {
            view.across.resolution = selection.inputResolution;
            view.down.resolution = selection.inputResolution;
        }
        view.resolution = view.across.resolution;

        const double least = std::max(selection.resolution, selection.reduceAbove);
        view.isReduced = selection.resolution > 0 && view.across.resolution > least && view.down.resolution > least;
        if (view.isReduced)
        {
            Reduce(view.across, selection.resolution);
            Reduce(view.down, selection.resolution);
            view.resolution = selection.resolution;
        }
        return view;
    }
}
