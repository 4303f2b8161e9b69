// The cost of reading: every line of the TIFF files named, by TIFFReadScanline into one buffer. Prints a sum of the lines'
// first bytes, so that the reading cannot be left out.

#include <tiffio.h>

#include <cstdint>
#include <cstdio>
#include <vector>

int main(int argc, char** argv)
{
    unsigned long sum = 0;
    for (int i = 1; i < argc; ++i)
    {
        TIFF* tiff = TIFFOpen(argv[i], "r");
        if (!tiff)
        {
            return 1;
        }
        std::uint32_t height = 0;
        TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height);
        std::vector<std::uint8_t> line(static_cast<std::size_t>(TIFFScanlineSize(tiff)));
        for (std::uint32_t y = 0; y < height; ++y)
        {
            if (TIFFReadScanline(tiff, line.data(), y, 0) != 1)
            {
                return 1;
            }
            sum += line.front();
        }
        TIFFClose(tiff);
    }
    std::printf("%lu\n", sum);
    return 0;
}
