// The separations of tests that are not about TIFF: 8-bit grey, uncompressed; 0 is full ink.
#pragma once

#include "tests/support/TiffMaker.h"

#include <string>
#include <vector>

namespace TestSupport
{
    /// A file of these lines, all of one length, with `pixelsPerInch` on both axes.
    inline std::string PlainTiff(const std::vector<std::string>& lines, double pixelsPerInch = 2)
    {
        TiffForm form;
        form.width = static_cast<std::uint32_t>(lines.at(0).size());
        form.height = static_cast<std::uint32_t>(lines.size());
        form.rowsPerStrip = form.height;
        form.resolution = pixelsPerInch;
        return MakeTiff(
            form, [&](std::uint32_t x, std::uint32_t y) { return static_cast<unsigned char>(lines[y][x]); });
    }

    /// The same with every pixel `value`.
    inline std::string PlainTiff(std::size_t width = 4, std::size_t height = 2, unsigned char value = 0)
    {
        return PlainTiff(std::vector<std::string>(height, std::string(width, static_cast<char>(value))));
    }
}
