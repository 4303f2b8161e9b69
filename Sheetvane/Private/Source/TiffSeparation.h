// A TIFF separation on its way into the document: what its header says of the sheet, and its lines.
#pragma once

#include <RasterFeedLib.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>

namespace RasterOutput
{
    class CIP3Painter;
}

namespace Sheetvane
{
    struct Preview;

    /// Reads the header of the file at `path`, or of a view of it: pixels per line, lines, and pixels per inch across a line,
    /// which stands for both axes. A header without a width gives an infinite resolution, one with a negative width a
    /// negative one. Throws KX_ECIP3Exception TiffNotOpened, TiffHeaderNotRead, FileAccessFailed or NoFileHandle.
    void ReadTiffGeometry(
        const std::string& path, const RasterFeedSelection& view, std::uint32_t& width, std::uint32_t& height,
        double& resolution);

    /// Writes the view of the file at `path` as one separation: BeginSeparation, each line through one buffer,
    /// EndSeparation. Needs a painter within a surface. Throws as ReadTiffGeometry, TiffLineNotRead, what the painter
    /// throws, and std::bad_alloc. The separation is not ended then.
    void
    ConvertSeparation(RasterOutput::CIP3Painter& painter, const std::string& path, const RasterFeedSelection& view);

    /// All lines of a view that is reduced; null of one that is not, which may be of any size, and once `isEnding` is seen.
    /// Throws as ConvertSeparation does, on any thread.
    std::unique_ptr<Preview>
    ReadPreview(const std::string& path, const RasterFeedSelection& view, const std::atomic<bool>& isEnding);

    /// Writes `preview` as one separation, as ConvertSeparation does. Its bytes are changed.
    void ConvertPreview(RasterOutput::CIP3Painter& painter, Preview& preview);
}
