// Separations as files, plain 8-bit grey and uncompressed: 0 is full ink.
#pragma once

#include <gtest/gtest.h>
#include <tiffio.h>

#include <string>
#include <vector>

namespace SheetvaneTest
{
    /// Writes `lines`, all of one length, as the TIFF `path` with `pixelsPerInch` on both axes.
    inline void WriteTiff(const std::string& path, const std::vector<std::string>& lines, float pixelsPerInch)
    {
        TIFF* const tiff = TIFFOpen(path.c_str(), "w");
        ASSERT_NE(tiff, nullptr) << path;
        TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(lines.at(0).size()));
        TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(lines.size()));
        TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
        TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
        TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
        TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
        TIFFSetField(tiff, TIFFTAG_XRESOLUTION, static_cast<double>(pixelsPerInch));
        TIFFSetField(tiff, TIFFTAG_YRESOLUTION, static_cast<double>(pixelsPerInch));
        for (std::size_t row = 0; row < lines.size(); ++row)
        {
            std::string line = lines[row];
            EXPECT_EQ(TIFFWriteScanline(tiff, line.data(), static_cast<std::uint32_t>(row)), 1) << path;
        }
        TIFFClose(tiff);
    }
}
