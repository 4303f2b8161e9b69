// libtiff's writer on a file in memory, fed with samples packed by hand.
#include "tests/support/TiffMaker.h"

#include "tests/support/Folder.h"

#include <tiffio.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <utility>

#include <sys/mman.h>

namespace TestSupport
{
    namespace
    {
        void Require(bool success)
        {
            if (!success)
            {
                throw std::runtime_error("libtiff cannot write this form");
            }
        }

        /// Columns [left, left + count) of row y of a plane as libtiff wants them: packed from the highest bit down.
        std::vector<unsigned char> PackRow(
            const TiffForm& form, const InkRule& rule, unsigned plane, std::uint32_t left, std::uint32_t count,
            std::uint32_t y)
        {
            const unsigned samples = form.planar == PLANARCONFIG_CONTIG ? form.samples : 1;
            std::vector<unsigned char> row((std::size_t{count} * samples * form.bits + 7) / 8);
            for (std::uint32_t i = 0; i < count * samples; ++i)
            {
                // What a tile has beyond the image must not show: the opposite of its last column and row.
                const std::uint32_t x = left + i / samples;
                const bool outside = x >= form.width || y >= form.height;
                std::uint32_t value =
                    rule(plane + i % samples, std::min(x, form.width - 1), std::min(y, form.height - 1));
                if (outside)
                {
                    value = ~value & ((1u << form.bits) - 1);
                }
                if (form.bits == 16)
                {
                    const auto sample = static_cast<std::uint16_t>(value);
                    std::memcpy(&row[i * 2], &sample, 2);
                }
                else if (form.bits == 8)
                {
                    row[i] = static_cast<unsigned char>(value);
                }
                else
                {
                    for (unsigned bit = 0; bit < form.bits; ++bit)
                    {
                        const std::size_t at = std::size_t{i} * form.bits + bit;
                        if ((value >> (form.bits - 1 - bit) & 1) != 0)
                        {
                            row[at / 8] = static_cast<unsigned char>(row[at / 8] | 0x80u >> at % 8);
                        }
                    }
                }
            }
            return row;
        }

        void WriteTiles(TIFF* tiff, const TiffForm& form, const InkRule& rule, std::uint16_t plane)
        {
            for (std::uint32_t top = 0; top < form.height; top += form.tileLength)
            {
                for (std::uint32_t left = 0; left < form.width; left += form.tileWidth)
                {
                    std::vector<unsigned char> tile;
                    for (std::uint32_t y = 0; y < form.tileLength; ++y)
                    {
                        const auto row = PackRow(form, rule, plane, left, form.tileWidth, top + y);
                        tile.insert(tile.end(), row.begin(), row.end());
                    }
                    const std::uint32_t index = TIFFComputeTile(tiff, left, top, 0, plane);
                    Require(TIFFWriteEncodedTile(tiff, index, tile.data(), static_cast<tmsize_t>(tile.size())) > 0);
                }
            }
        }

        void WritePage(TIFF* tiff, const TiffForm& form, const InkRule& rule)
        {
            TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, form.width);
            TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, form.height);
            TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, form.bits);
            TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, form.samples);
            TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, form.photometric);
            TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, form.planar);
            Require(TIFFSetField(tiff, TIFFTAG_COMPRESSION, form.compression) == 1);
            if (form.photometric == PHOTOMETRIC_SEPARATED && form.samples == 1)
            {
                TIFFSetField(tiff, TIFFTAG_INKSET, INKSET_MULTIINK);
                TIFFSetField(tiff, TIFFTAG_NUMBEROFINKS, 1);
            }
            // What is 0 or empty has no tag.
            const auto set = [tiff](std::uint32_t tag, auto value)
            { Require(value == 0 || TIFFSetField(tiff, tag, value) == 1); };
            const auto setAll = [tiff](std::uint32_t tag, const auto& values)
            {
                const auto count = static_cast<std::uint32_t>(values.size());
                Require(values.empty() || TIFFSetField(tiff, tag, count, values.data()) == 1);
            };
            set(TIFFTAG_INKSET, form.inkSet);
            setAll(TIFFTAG_EXTRASAMPLES, form.extraSamples);
            setAll(TIFFTAG_INKNAMES, form.inkNames);
            if (!form.pageName.empty())
            {
                TIFFSetField(tiff, TIFFTAG_PAGENAME, form.pageName.c_str());
            }
            setAll(TIFFTAG_PHOTOSHOP, form.imageResources);
            set(TIFFTAG_PREDICTOR, form.predictor);
            set(TIFFTAG_T4OPTIONS, form.faxOptions);
            set(TIFFTAG_FILLORDER, form.fillOrder);
            set(TIFFTAG_ORIENTATION, form.orientation);
            set(TIFFTAG_SAMPLEFORMAT, form.sampleFormat);
            set(TIFFTAG_SUBFILETYPE, form.subfileType);
            set(TIFFTAG_XRESOLUTION, form.resolution);
            set(TIFFTAG_YRESOLUTION, form.yResolution != 0 ? form.yResolution : form.resolution);
            set(TIFFTAG_JPEGQUALITY, form.compression == COMPRESSION_JPEG ? 100 : 0);
            if (form.tileWidth == 0)
            {
                TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, form.rowsPerStrip);
            }
            else
            {
                TIFFSetField(tiff, TIFFTAG_TILEWIDTH, form.tileWidth);
                TIFFSetField(tiff, TIFFTAG_TILELENGTH, form.tileLength);
            }
            const std::uint16_t planes = form.planar == PLANARCONFIG_CONTIG ? 1 : form.samples;
            for (std::uint16_t plane = 0; plane < planes; ++plane)
            {
                if (form.tileWidth != 0)
                {
                    WriteTiles(tiff, form, rule, plane);
                    continue;
                }
                for (std::uint32_t y = 0; y < form.height; ++y)
                {
                    std::vector<unsigned char> row = PackRow(form, rule, plane, 0, form.width, y);
                    Require(TIFFWriteScanline(tiff, row.data(), y, plane) == 1);
                }
            }
            Require(TIFFWriteDirectory(tiff) == 1);
        }

        /// The same for every sample.
        InkRule ForAll(const SampleRule& rule)
        {
            return [&rule](unsigned, std::uint32_t x, std::uint32_t y) { return rule(x, y); };
        }

        std::string BigEndian(std::uint64_t number, unsigned width)
        {
            std::string bytes;
            for (unsigned i = width; i-- > 0;)
            {
                bytes += static_cast<char>(number >> 8 * i & 0xff);
            }
            return bytes;
        }
    }

    std::string MakePages(const std::vector<TiffForm>& pages, const InkRule& rule)
    {
        const int file = memfd_create("made", MFD_CLOEXEC);
        const TiffForm& first = pages.front();
        const std::string mode = std::string("w") + (first.bigEndian ? "b" : "l") + (first.bigTiff ? "8" : "");
        // Some forms make libtiff wonder; that is what they are for.
        const std::unique_ptr<TIFFOpenOptions, decltype(&TIFFOpenOptionsFree)> quiet(
            TIFFOpenOptionsAlloc(), TIFFOpenOptionsFree);
        const TIFFErrorHandlerExtR ignore = [](TIFF*, void*, const char*, const char*, va_list) { return 1; };
        TIFFOpenOptionsSetWarningHandlerExtR(quiet.get(), ignore, nullptr);
        TIFFOpenOptionsSetErrorHandlerExtR(quiet.get(), ignore, nullptr);
        const std::unique_ptr<TIFF, decltype(&TIFFClose)> tiff(
            TIFFFdOpenExt(file, "made", mode.c_str(), quiet.get()), TIFFClose); // which closes the file, too
        Require(tiff != nullptr);
        for (const TiffForm& page : pages)
        {
            WritePage(tiff.get(), page, rule);
        }
        TIFFFlush(tiff.get());
        return Folder::BytesOf("/proc/self/fd/" + std::to_string(file));
    }

    SampleRule MixedSamples(unsigned bits)
    {
        return [bits](std::uint32_t x, std::uint32_t y) -> std::uint32_t
        {
            const std::uint32_t highest = (1u << bits) - 1;
            if (y % 7 == 0)
            {
                return y % 2 == 0 ? highest : 0; // whole rows of one value
            }
            if (x < 12)
            {
                return (x + y) % 3 == 0 ? 0 : highest; // short runs
            }
            return (x * 2654435761u + y * 40503u) >> 7 & highest;
        };
    }

    InkRule MixedInks(unsigned bits)
    {
        return [rule = MixedSamples(bits)](unsigned sample, std::uint32_t x, std::uint32_t y)
        { return rule(x + 5 * sample, y + sample); };
    }

    std::string ImageResource(std::uint16_t identifier, const std::string& data)
    {
        const std::string noName(2, '\0');
        return "8BIM" + BigEndian(identifier, 2) + noName + BigEndian(data.size(), 4) + data +
               std::string(data.size() % 2, '\0');
    }

    std::string UnicodeNames(const std::vector<std::u16string>& names)
    {
        std::string bytes;
        for (const std::u16string& name : names)
        {
            bytes += BigEndian(name.size(), 4);
            for (const char16_t unit : name)
            {
                bytes += BigEndian(unit, 2);
            }
        }
        return bytes;
    }

    std::string PascalNames(const std::vector<std::string>& names)
    {
        std::string bytes;
        for (const std::string& name : names)
        {
            bytes += static_cast<char>(name.size()) + name;
        }
        return bytes;
    }

    std::string MakeTiff(const TiffForm& form, const SampleRule& rule)
    {
        return MakePages({form}, ForAll(rule));
    }

    std::string MakeTiff(const TiffForm& first, const TiffForm& second, const SampleRule& rule)
    {
        return MakePages({first, second}, ForAll(rule));
    }
}
