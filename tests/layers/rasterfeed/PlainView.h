// Views worked out pixel by pixel from their definition, with whole images in memory: the truth that the reader's are held
// against.
#pragma once

#include "tests/support/TiffMaker.h"

#include <RasterFeedLib.h>

#include <string>
#include <vector>

namespace RasterFeedTest
{
    /// An image, a byte for each pixel; all lines have one length.
    struct PlainImage
    {
        std::vector<std::string> lines;
        double across; ///< pixels per inch
        double down;   ///< pixels per inch
    };

    /// The bytes that the samples of a file of that form become, as they are stored.
    PlainImage StoredImage(const TestSupport::TiffForm& form, const TestSupport::SampleRule& rule);

    /// The stored image made upright by its TIFF orientation, 1 to 8.
    PlainImage Upright(PlainImage stored, int orientation);

    /// The upright image turned as a host wants it.
    PlainImage Turned(PlainImage upright, RasterFeedOrientation orientation);

    /// The image reduced to `resolution`.
    PlainImage Reduced(const PlainImage& image, double resolution);
}
