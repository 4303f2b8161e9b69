// Writes the pages that whole conversions are timed on: make_pages DIR [wide GIGABYTES]. Without "wide": 4000 x 6000
// greyscale pages of the three kinds, uncompressed and Deflate, and a 20000 x 28000 plate in CCITT Group 4. With it: one
// uncompressed page, 30000 pixels wide, of that many gigabytes.

#include "bench/pages/Pages.h"

#include <tiffio.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>

namespace
{
    using Tiff = std::unique_ptr<TIFF, decltype(&TIFFClose)>;

    Tiff Create(const std::string& path, std::uint32_t width, std::uint32_t height, int bits, int compression)
    {
        Tiff tiff(TIFFOpen(path.c_str(), "w"), &TIFFClose);
        if (!tiff)
        {
            throw std::runtime_error("cannot create " + path);
        }
        TIFFSetField(tiff.get(), TIFFTAG_IMAGEWIDTH, width);
        TIFFSetField(tiff.get(), TIFFTAG_IMAGELENGTH, height);
        TIFFSetField(tiff.get(), TIFFTAG_BITSPERSAMPLE, bits);
        TIFFSetField(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, 1);
        TIFFSetField(tiff.get(), TIFFTAG_COMPRESSION, compression);
        TIFFSetField(tiff.get(), TIFFTAG_PHOTOMETRIC, bits == 1 ? PHOTOMETRIC_MINISWHITE : PHOTOMETRIC_MINISBLACK);
        TIFFSetField(tiff.get(), TIFFTAG_XRESOLUTION, 300.0);
        TIFFSetField(tiff.get(), TIFFTAG_YRESOLUTION, 300.0);
        TIFFSetField(tiff.get(), TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
        TIFFSetField(tiff.get(), TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff.get(), 0));
        return tiff;
    }

    void WriteLine(TIFF* tiff, const std::uint8_t* line, std::uint32_t y)
    {
        if (TIFFWriteScanline(tiff, const_cast<std::uint8_t*>(line), y, 0) != 1)
        {
            throw std::runtime_error("cannot write a line");
        }
    }

    void WritePage(const std::string& path, Pages::Kind kind, int compression)
    {
        constexpr std::uint32_t width = 4000;
        constexpr std::uint32_t height = 6000;
        const auto page = Pages::Make(kind, width, height);
        const Tiff tiff = Create(path, width, height, 8, compression);
        for (std::uint32_t y = 0; y < height; ++y)
        {
            WriteLine(tiff.get(), page.data() + std::size_t{y} * width, y);
        }
    }

    // A plate: 8 x 8 halftone dots that grow across the width, with solid bars.
    void WritePlate(const std::string& path)
    {
        constexpr std::uint32_t width = 20000;
        constexpr std::uint32_t height = 28000;
        const Tiff tiff = Create(path, width, height, 1, COMPRESSION_CCITTFAX4);
        std::uint8_t line[width / 8];
        for (std::uint32_t y = 0; y < height; ++y)
        {
            for (std::uint32_t x = 0; x < width / 8; ++x)
            {
                const std::uint32_t dot = x * 8 / (width / 8);
                const bool inside = y % 8 <= dot;
                line[x] = y % 1000 < 40 ? 0xFF : inside ? static_cast<std::uint8_t>(0xFF >> (7 - dot)) : 0;
            }
            WriteLine(tiff.get(), line, y);
        }
    }

    void WriteWide(const std::string& path, double gigabytes)
    {
        constexpr std::uint32_t width = 30000;
        const auto height = static_cast<std::uint32_t>(gigabytes * 1e9 / width);
        constexpr std::size_t period = 400;
        const auto page = Pages::Make(Pages::Kind::Photo, width, period);
        const Tiff tiff = Create(path, width, height, 8, COMPRESSION_NONE);
        for (std::uint32_t y = 0; y < height; ++y)
        {
            WriteLine(tiff.get(), page.data() + y % period * width, y);
        }
    }
}

int main(int argc, char** argv)
try
{
    if (argc != 2 && !(argc == 4 && std::strcmp(argv[2], "wide") == 0))
    {
        std::fprintf(stderr, "usage: make_pages DIR [wide GIGABYTES]\n");
        return 2;
    }
    const std::string dir = std::string(argv[1]) + "/";
    if (argc == 4)
    {
        WriteWide(dir + "wide.tif", std::atof(argv[3]));
        return 0;
    }
    for (const auto kind : {Pages::Kind::Flat, Pages::Kind::Photo, Pages::Kind::Noise})
    {
        WritePage(dir + Pages::Name(kind) + ".tif", kind, COMPRESSION_NONE);
        WritePage(dir + Pages::Name(kind) + "-deflate.tif", kind, COMPRESSION_ADOBE_DEFLATE);
    }
    WritePlate(dir + "plate-g4.tif");
    return 0;
}
catch (const std::exception& failure)
{
    std::fprintf(stderr, "make_pages: %s\n", failure.what());
    return 1;
}
