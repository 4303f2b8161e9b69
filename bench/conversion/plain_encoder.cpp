// A yardstick: plain_encoder IN.tif OUT decodes the lines with libtiff and run-length and ASCII85 encodes them in plain
// loops, without any of a PPF file's structure.

#include <tiffio.h>

#include <cstdint>
#include <cstdio>
#include <vector>

namespace
{
    using Bytes = std::vector<std::uint8_t>;

    void RunLength(const Bytes& line, Bytes& out)
    {
        out.clear();
        for (std::size_t p = 0; p < line.size();)
        {
            std::size_t run = 1;
            while (p + run < line.size() && run < 128 && line[p + run] == line[p])
            {
                ++run;
            }
            if (run > 1)
            {
                out.push_back(static_cast<std::uint8_t>(257 - run));
                out.push_back(line[p]);
                p += run;
                continue;
            }
            std::size_t end = p + 1;
            while (end < line.size() && end - p < 128 && (end + 1 == line.size() || line[end] != line[end + 1]))
            {
                ++end;
            }
            out.push_back(static_cast<std::uint8_t>(end - p - 1));
            out.insert(
                out.end(), line.begin() + static_cast<std::ptrdiff_t>(p),
                line.begin() + static_cast<std::ptrdiff_t>(end));
            p = end;
        }
    }

    class Ascii85
    {
    public:
        explicit Ascii85(std::FILE* theFile)
            : file(theFile)
        {
        }

        void Put(std::uint8_t byte)
        {
            group = group << 8 | byte;
            if (++count == 4)
            {
                Group();
            }
        }

    private:
        void Group()
        {
            if (group == 0)
            {
                std::putc('z', file);
            }
            else
            {
                char digits[5];
                for (int i = 4; i >= 0; --i)
                {
                    digits[i] = static_cast<char>('!' + group % 85);
                    group /= 85;
                }
                std::fwrite(digits, 1, sizeof digits, file);
            }
            group = 0;
            count = 0;
        }

        std::FILE* file;
        std::uint32_t group = 0;
        int count = 0;
    };
}

int main(int argc, char** argv)
{
    TIFF* tiff = argc == 3 ? TIFFOpen(argv[1], "r") : nullptr;
    std::FILE* file = tiff ? std::fopen(argv[2], "wb") : nullptr;
    if (!file)
    {
        std::fprintf(stderr, "usage: plain_encoder IN.tif OUT\n");
        return 2;
    }
    std::uint32_t height = 0;
    TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height);
    Bytes line(static_cast<std::size_t>(TIFFScanlineSize(tiff)));
    Bytes packed;
    Ascii85 encoder(file);
    for (std::uint32_t y = 0; y < height; ++y)
    {
        if (TIFFReadScanline(tiff, line.data(), y, 0) != 1)
        {
            return 1;
        }
        for (auto& byte : line)
        {
            byte = static_cast<std::uint8_t>(255 - byte);
        }
        RunLength(line, packed);
        for (const auto byte : packed)
        {
            encoder.Put(byte);
        }
    }
    TIFFClose(tiff);
    return std::fclose(file) == 0 ? 0 : 1;
}
