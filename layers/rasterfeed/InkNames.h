// The inks of a page and what they are called. It stands apart because names are the one thing in this layer that is text: what
// writers put into a TIFF for people, in three places and in several encodings.
#pragma once

#include <RasterFeedLib.h>

#include <string>
#include <vector>

namespace RasterFeed
{
    class TiffFile;

    /// The inks of the image at which `file` stands, in the order of their samples, those that are alpha left out. Throws
    /// Refusal for an image of a form that a separation cannot have, and for an ink without a name.
    std::vector<RasterFeedInk> InksOfPage(const TiffFile& file);

    /// How a person picks an ink in place of one that is refused.
    std::string WayByHand(const RasterFeedInk& ink);
}
