// A TIFF separation on its way into the document: what its header says of the sheet, and its lines.
#pragma once

#include <cstdint>
#include <string>

namespace RasterOutput
{
    class CIP3Painter;
}

namespace Sheetvane
{
    /// Reads the header of the file at `path`: pixels per line, lines, and pixels per inch across a line, which stands
    /// for both axes. A header without a width gives an infinite resolution, one with a negative width a negative one.
    /// Throws KX_ECIP3Exception TiffNotOpened, TiffHeaderNotRead, FileAccessFailed or NoFileHandle.
    void ReadTiffGeometry(const std::string& path, std::uint32_t& width, std::uint32_t& height, double& resolution);

    /// Writes the file at `path` as one separation: BeginSeparation, each line through one buffer, EndSeparation.
    /// Needs a painter within a surface. Throws as ReadTiffGeometry, TiffLineNotRead, what the painter throws, and
    /// std::bad_alloc. The separation is not ended then.
    void ConvertSeparation(RasterOutput::CIP3Painter& painter, const std::string& path);
}
