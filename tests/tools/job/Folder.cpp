#include "tests/tools/job/Folder.h"

#include <tiffio.h>

namespace JobsTest
{
    std::string Folder::WriteTiff(const std::string& name, int width, int height, int value) const
    {
        std::string entry = *this / name;
        TIFF* const tiff = TIFFOpen(entry.c_str(), "w");
        TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
        TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height);
        TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
        TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
        TIFFSetField(tiff, TIFFTAG_XRESOLUTION, 2.0);
        TIFFSetField(tiff, TIFFTAG_YRESOLUTION, 2.0);
        TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
        std::string line(static_cast<std::size_t>(width), static_cast<char>(value));
        for (int row = 0; row < height; ++row)
        {
            TIFFWriteScanline(tiff, line.data(), static_cast<std::uint32_t>(row), 0);
        }
        TIFFClose(tiff);
        return entry;
    }
}
