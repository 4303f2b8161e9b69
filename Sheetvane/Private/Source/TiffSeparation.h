// A TIFF separation on its way into the document: what its header says of the sheet, and its lines.
#pragma once

#include <RasterFeedLib.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

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

    /// What is read of one file at a time: the view of one separation or, where there are `channels`, one of each of them in
    /// turn, which are read together.
    struct TiffView
    {
        const std::string& path;
        RasterFeedSelection view;
        std::vector<std::uint32_t> channels; ///< of the view's page, from 1, in place of its own

        std::size_t Separations() const { return channels.empty() ? 1 : channels.size(); }
    };

    /// Writes the view as its separations, each one: BeginSeparation, each line through one buffer, EndSeparation. Needs a
    /// painter within a surface. Throws as ReadTiffGeometry, TiffLineNotRead, what the painter throws, and std::bad_alloc.
    /// The separation is not ended then.
    void ConvertSeparations(RasterOutput::CIP3Painter& painter, const TiffView& tiff);

    /// All lines of a view that is reduced; null of one that is not, which may be of any size, of several separations that
    /// take more than 256 MiB, and once `isEnding` is seen. Throws as ConvertSeparations does, on any thread.
    std::unique_ptr<Preview> ReadPreview(const TiffView& tiff, const std::atomic<bool>& isEnding);

    /// Writes `preview` as its separations, as ConvertSeparations does. Its bytes are changed.
    void ConvertPreview(RasterOutput::CIP3Painter& painter, Preview& preview);
}
