// Writes the fuzzer's first seeds to the folder named on the command line: one small file for each way of decoding, and one
// for each edit that leads into a branch of its own.

#include "tests/support/TiffEditor.h"
#include "tests/support/TiffMaker.h"

#include <filesystem>
#include <fstream>

namespace RasterFeedFuzz
{
    namespace
    {
        using TestSupport::MakeTiff;
        using TestSupport::MixedSamples;
        using TestSupport::TiffEditor;
        using TestSupport::TiffForm;
        void Write(
            const std::filesystem::path& folder, const std::string& name, const std::string& bytes, int view = 0,
            int image = 0)
        {
            // The last three bytes choose page and channels and a view, and order no fault.
            std::ofstream(folder / (name + ".tif"), std::ios::binary)
                << bytes << static_cast<char>(image) << static_cast<char>(view) << '\0';
        }

        /// Composites: a channel, and several at once, stored together and in planes; names in each of their places.
        void WriteComposites(const std::filesystem::path& folder)
        {
            using TestSupport::ImageResource;
            TiffForm form;
            form.width = 24;
            form.height = 16;
            form.rowsPerStrip = 8;
            form.samples = 5;
            form.photometric = PHOTOMETRIC_SEPARATED;
            form.resolution = 600;
            form.extraSamples = {EXTRASAMPLE_UNSPECIFIED};
            form.imageResources = ImageResource(1006, TestSupport::PascalNames({"Gold"})) +
                                  ImageResource(1045, TestSupport::UnicodeNames({u"Silber"}));
            form.compression = COMPRESSION_LZW;
            form.predictor = PREDICTOR_HORIZONTAL;
            TiffForm page;
            page.width = 8;
            page.height = 4;
            page.pageName = "Varnish";
            const auto write = [&](const std::string& name, int view, int image)
            {
                Write(
                    folder, "inks-" + name, TestSupport::MakePages({form, page}, TestSupport::MixedInks(form.bits)),
                    view, image);
            };
            write("one", 0, 0x50);
            write("reduced", 0x08, 0x90);
            write("turned", 0x08 + 1, 0x90);
            form.planar = PLANARCONFIG_SEPARATE;
            write("planes", 0x08, 0x90);
            write("second-page", 0, 0x42);
            form.planar = PLANARCONFIG_CONTIG;
            form.predictor = 0;
            form.compression = COMPRESSION_PACKBITS;
            form.bits = 1;
            write("bits", 0x08, 0x90);
            form.bits = 8;
            form.samples = 4;
            form.extraSamples.clear();
            form.compression = COMPRESSION_JPEG;
            form.imageResources.clear();
            form.inkNames = std::string("A\0B\0C\0D", 8);
            write("jpeg", 0, 0x4c);
        }

        void WriteSeeds(const std::filesystem::path& folder)
        {
            struct Coding
            {
                const char* name;
                std::uint16_t compression;
                std::uint16_t bits;
                std::uint16_t predictor;
            };
            const Coding codings[] = {
                {"none", COMPRESSION_NONE, 8, 0},
                {"none-1", COMPRESSION_NONE, 1, 0},
                {"none-16", COMPRESSION_NONE, 16, 0},
                {"packbits", COMPRESSION_PACKBITS, 8, 0},
                {"lzw", COMPRESSION_LZW, 8, 0},
                {"lzw-predictor", COMPRESSION_LZW, 16, PREDICTOR_HORIZONTAL},
                {"deflate", COMPRESSION_ADOBE_DEFLATE, 8, PREDICTOR_HORIZONTAL},
                {"zstd", COMPRESSION_ZSTD, 8, 0},
                {"lzma", COMPRESSION_LZMA, 8, 0},
                {"rle", COMPRESSION_CCITTRLE, 1, 0},
                {"g3", COMPRESSION_CCITTFAX3, 1, 0},
                {"g4", COMPRESSION_CCITTFAX4, 1, 0},
                {"jpeg", COMPRESSION_JPEG, 8, 0},
            };
            for (const Coding& coding : codings)
            {
                TiffForm form;
                form.width = 24;
                form.height = 16;
                form.rowsPerStrip = 8;
                form.compression = coding.compression;
                form.bits = coding.bits;
                form.predictor = coding.predictor;
                form.resolution = 300;
                Write(folder, coding.name, MakeTiff(form, MixedSamples(form.bits)));
                form.bigEndian = true;
                form.bigTiff = true;
                form.orientation = 3;
                if (coding.compression != COMPRESSION_JPEG)
                {
                    form.fillOrder = 2;
                }
                form.tileWidth = 16;
                form.tileLength = 16;
                Write(folder, std::string(coding.name) + "-tiles", MakeTiff(form, MixedSamples(form.bits)));
            }
            TiffForm form;
            form.width = 16;
            form.height = 8;
            TiffForm thumbnail = form;
            thumbnail.subfileType = 1;
            Write(folder, "thumbnail", MakeTiff(thumbnail, form, MixedSamples(8)));

            // A reduction of each kind of rows, of a quarter turn and from the bottom.
            TiffForm plate;
            plate.width = 70;
            plate.height = 40;
            plate.bits = 1;
            plate.compression = COMPRESSION_CCITTFAX4;
            plate.orientation = 6;
            plate.resolution = 600;
            Write(folder, "view-plate-turned", MakeTiff(plate, MixedSamples(1)), 0x08);
            Write(folder, "view-plate-flipped", MakeTiff(plate, MixedSamples(1)), 0x08 + 5);
            plate.bits = 16;
            plate.compression = COMPRESSION_LZW;
            plate.orientation = 1;
            Write(folder, "view-tone-turned-round", MakeTiff(plate, MixedSamples(16)), 0x18 + 2);
            Write(folder, "view-tone-wide-sums", MakeTiff(plate, MixedSamples(16)), 0x10 + 0x60);

            // Damage that a view comes upon: in the last strip, which it reads first, and after the last row that it needs.
            plate.height = 44;
            plate.rowsPerStrip = 4;
            const TiffEditor rows(MakeTiff(plate, MixedSamples(16)));
            std::string damaged = rows.Bytes();
            damaged[rows.Get(TIFFTAG_STRIPOFFSETS, 10)] = '\xff';
            Write(folder, "view-damaged", damaged, 0x18 + 2);

            WriteComposites(folder);

            TiffEditor loop(MakeTiff(thumbnail, MixedSamples(8)));
            loop.SetNext(loop.DirectoryOffset());
            Write(folder, "loop", loop.Bytes());
            TiffEditor counts(MakeTiff(form, MixedSamples(8)));
            counts.SetRaw(TIFFTAG_STRIPBYTECOUNTS, TIFF_LONG, 0x40000000, 8);
            Write(folder, "byte-counts", counts.Bytes());
        }
    }
}

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        return 2;
    }
    RasterFeedFuzz::WriteSeeds(argv[1]);
    return 0;
}
