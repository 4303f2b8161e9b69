// The inks that a file holds, page by page. It stands apart from the reading of an image, of which it needs no data.
#pragma once

#include <RasterFeedLib.h>

#include <vector>

namespace RasterFeed
{
    class TiffFile;

    /// The inks of all pages of `file`, which stands at its first and is at its last afterwards; at least one. Throws Refusal,
    /// with the page in front, for a page that is neither a reduced-resolution image nor a mask and of a form that a separation
    /// cannot have, and for an ink without a name of its own.
    std::vector<RasterFeedInk> InksOf(TiffFile& file);
}
