// Writes the pages that whole conversions are timed on: make_pages DIR [wide GIGABYTES | plates]. Without a word: 4000 x 6000
// greyscale pages of the three kinds, uncompressed and Deflate. "wide": one uncompressed page, 30000 pixels wide, of that many
// gigabytes. "plates": one of 67200 x 95200 pixels in CCITT Group 4, a greyscale page of 600 pixels per inch, and its bytes as a
// CMYK page.

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

    Tiff Create(
        const std::string& path, std::uint32_t width, std::uint32_t height, int bits, int compression,
        double resolution = 300)
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
        TIFFSetField(tiff.get(), TIFFTAG_XRESOLUTION, resolution);
        TIFFSetField(tiff.get(), TIFFTAG_YRESOLUTION, resolution);
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

    // The largest plate there is, 28 x 40 inches: bands of halftone dots that grow across the width, and paper.
    void WriteLargePlate(const std::string& path)
    {
        constexpr std::uint32_t width = 67200;
        constexpr std::uint32_t height = 95200;
        const Tiff tiff = Create(path, width, height, 1, COMPRESSION_CCITTFAX4, 2400);
        std::uint8_t line[width / 8];
        for (std::uint32_t y = 0; y < height; ++y)
        {
            for (std::uint32_t x = 0; x < width / 8; ++x)
            {
                const std::uint32_t dot = x * 8 / (width / 8);
                line[x] = y / 1000 % 8 == 0 && y % 8 <= dot ? static_cast<std::uint8_t>(0xFF >> (7 - dot)) : 0;
            }
            WriteLine(tiff.get(), line, y);
        }
    }

    // A page of grain at 600 pixels per inch, as large as the plates that scripts/bench renders; or the same bytes as a
    // composite of several inks.
    void WriteContone(const std::string& path, std::uint32_t inks)
    {
        constexpr std::uint32_t rowBytes = 7000;
        constexpr std::uint32_t height = 10000;
        const auto page = Pages::Make(Pages::Kind::Photo, rowBytes, height);
        const Tiff tiff = Create(path, rowBytes / inks, height, 8, COMPRESSION_NONE, 600);
        if (inks > 1)
        {
            TIFFSetField(tiff.get(), TIFFTAG_SAMPLESPERPIXEL, inks);
            TIFFSetField(tiff.get(), TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_SEPARATED);
        }
        for (std::uint32_t y = 0; y < height; ++y)
        {
            WriteLine(tiff.get(), page.data() + std::size_t{y} * rowBytes, y);
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
    const bool isWide = argc == 4 && std::strcmp(argv[2], "wide") == 0;
    const bool isPlates = argc == 3 && std::strcmp(argv[2], "plates") == 0;
    if (argc != 2 && !isWide && !isPlates)
    {
        std::fprintf(stderr, "usage: make_pages DIR [wide GIGABYTES | plates]\n");
        return 2;
    }
    const std::string dir = std::string(argv[1]) + "/";
    if (isWide)
    {
        WriteWide(dir + "wide.tif", std::atof(argv[3]));
        return 0;
    }
    if (isPlates)
    {
        WriteLargePlate(dir + "large.tif");
        WriteContone(dir + "contone.tif", 1);
        WriteContone(dir + "composite.tif", 4);
        return 0;
    }
    for (const auto kind : {Pages::Kind::Flat, Pages::Kind::Photo, Pages::Kind::Noise})
    {
        WritePage(dir + Pages::Name(kind) + ".tif", kind, COMPRESSION_NONE);
        WritePage(dir + Pages::Name(kind) + "-deflate.tif", kind, COMPRESSION_ADOBE_DEFLATE);
    }
    return 0;
}
catch (const std::exception& failure)
{
    std::fprintf(stderr, "make_pages: %s\n", failure.what());
    return 1;
}
