// What becomes of a separation that Ghostscript wrote: it is looked at for ink, and reduced to the preview that goes into
// the job. That is done page by page, so that the large separations of one page only are on the disk at a time.
#pragma once

#include <RasterFeedLib.h>

#include <cstdint>
#include <string>

namespace Pdf2Ppf
{
    /// Pixels.
    struct Size
    {
        std::uint32_t width;
        std::uint32_t height;
    };

    /// Whether a pixel of the TIFF at `path` is darker than paper. All pixels count, as a preview could round a trace away;
    /// reads no further than the first line with ink. Throws Host::Failure for a file that cannot be read.
    bool HasInk(const std::string& path);

    /// Writes the view `selection` of the TIFF at `source`, whose resolution is `selection.resolution` both across and down,
    /// to the new TIFF `target`, 8-bit grey. Gives its size. Throws Host::Failure.
    Size WritePreview(const std::string& source, const std::string& target, const RasterFeedSelection& selection);
}
