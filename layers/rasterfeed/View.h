// What of an image is delivered: its turn and its size, with or without reduction. It stands apart as the one place where a
// selection meets what a file says.
#pragma once

#include "rasterfeed/SeparationForm.h"
#include "rasterfeed/Turn.h"

#include <RasterFeedLib.h>

#include <cstdint>

namespace RasterFeed
{
    /// One direction of a view.
    struct ViewSide
    {
        std::uint32_t pixels = 0; ///< of the image
        double resolution = 0;    ///< of the image, pixels per inch
        std::uint32_t cells = 0;  ///< pixels of the view
        double pixelsPerCell = 1; ///< more than 1 if reduced, else 1
    };

    /// A view of one image.
    struct View
    {
        Turn turn; ///< from the stored image
        bool isReduced = false;
        ViewSide across;       ///< of the turned image
        ViewSide down;         ///< of the turned image
        double resolution = 0; ///< of the view across, pixels per inch
    };

    /// Whether every field of `selection` is one that it may have.
    bool IsSelection(const RasterFeedSelection& selection);

    /// The view that `selection` describes of an image of that form.
    View ChooseView(const SeparationForm& form, const RasterFeedSelection& selection);
}
