#include "ppf/Failure.h"
#include "ppf/ScanLineReader.h"
#include "tests/tools/ppf/Files.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

namespace PpfTest
{
    using namespace Ppf;

    namespace
    {
        using testing::HasSubstr;

        /// A JPEG picture whose samples all have one value, of 1 or 4 components.
        std::string
        FlatJpeg(unsigned width, unsigned height, unsigned components, unsigned char value, bool progressive)
        {
            jpeg_compress_struct jpeg = {};
            jpeg_error_mgr errors = {};
            jpeg.err = jpeg_std_error(&errors);
            jpeg_create_compress(&jpeg);
            unsigned char* bytes = nullptr;
            unsigned long size = 0;
            jpeg_mem_dest(&jpeg, &bytes, &size);
            jpeg.image_width = width;
            jpeg.image_height = height;
            jpeg.input_components = static_cast<int>(components);
            jpeg.in_color_space = components == 1 ? JCS_GRAYSCALE : JCS_CMYK;
            jpeg_set_defaults(&jpeg);
            if (progressive)
            {
                jpeg_simple_progression(&jpeg);
            }
            jpeg_start_compress(&jpeg, TRUE);
            std::vector<unsigned char> row(width * components, value);
            for (unsigned y = 0; y < height; ++y)
            {
                JSAMPROW rows[] = {row.data()};
                jpeg_write_scanlines(&jpeg, rows, 1);
            }
            jpeg_finish_compress(&jpeg);
            jpeg_destroy_compress(&jpeg);
            std::string text(reinterpret_cast<const char*>(bytes), size);
            std::free(bytes);
            return text;
        }

        /// Rows of the only separation of a file, or the failure to read them.
        std::string RowsOf(const std::string& separation)
        {
            const SoundFile file(FrontOf("(K)", separation));
            try
            {
                return Rows(file.document, file.Preview());
            }
            catch (const FormatError& error)
            {
                return error.what();
            }
        }

        TEST(ScanLineReader, EveryEncodingAndCompressionGivesTheSameRows)
        {
            const std::string pixels("\xFF\xFF\xFF\0\1\2\xFF\xFF\xFF\xFF", 10);
            const std::string runs("\xFE\xFF\x01\0\1\0\2\xFD\xFF\x80", 10);
            const std::string expected = "ffffff0001/02ffffffff";
            EXPECT_EQ(RowsOf(Separation(5, 2, "None", "Binary", pixels)), expected);
            EXPECT_EQ(RowsOf(HexPixels(5, 2, "ffffff00 01\n02ffffffff>")), expected);
            EXPECT_EQ(RowsOf(Separation(5, 2, "None", "ASCII85Decode", "s8W*!!<W<$s8N~>")), expected);
            EXPECT_EQ(RowsOf(Separation(5, 2, "RunLengthDecode", "Binary", runs)), expected);
            EXPECT_EQ(
                RowsOf(Separation(5, 2, "RunLengthDecode", "ASCIIHexDecode", "feff010001\n0002fdff80>")), expected);
        }

        TEST(ScanLineReader, RunsMayCrossRowsAndBlocks)
        {
            // 400 x 1000 pixels, more than one pull through the decoders, in runs and literals of every length.
            constexpr std::size_t Size = 400 * 1000;
            const RandomRuns runs(Size);
            const SoundFile file(
                FrontOf("(K)", Separation(400, 1000, "RunLengthDecode", "Binary", runs.tokens + "\x80")));
            ScanLineReader reader(file.document, file.Preview());
            std::string read;
            while (const unsigned char* row = reader.Next())
            {
                read.append(row, row + 400);
            }
            EXPECT_TRUE(read == runs.bytes);
            EXPECT_EQ(reader.CountExcess(), 0u);
        }

        TEST(ScanLineReader, OneBitRowsBeginAtFullBytes)
        {
            const std::string oneBit = "/CIP3PreviewImageBitsPerComp 1 def\n";
            EXPECT_EQ(RowsOf(HexPixels(10, 2, "a5c0 003f>", oneBit)), "ff00ff0000ff00ffffff/00000000000000000000");
            // Two pixels of four components in a byte.
            EXPECT_EQ(
                RowsOf(HexPixels(1, 2, "8f 70>", oneBit + "/CIP3PreviewImageComponents 4 def\n")), "ff000000/00ffffff");
        }

        TEST(ScanLineReader, DctPicturesOfOneAndFourComponentsAreDecoded)
        {
            for (const unsigned components : {1u, 4u})
            {
                for (const bool progressive : {false, true})
                {
                    const std::string jpeg = FlatJpeg(20, 10, components, 200, progressive);
                    const std::string entry = "/CIP3PreviewImageComponents " + std::to_string(components) + " def\n";
                    const SoundFile file(
                        FrontOf("(C)(M)(Y)(K)", Separation(20, 10, "DCTDecode", "Binary", jpeg, entry)));
                    const Preview& preview = file.Preview();
                    EXPECT_EQ(preview.data, jpeg);
                    ScanLineReader reader(file.document, preview);
                    unsigned rows = 0;
                    for (; const unsigned char* row = reader.Next(); ++rows)
                    {
                        for (std::uint64_t i = 0; i < preview.RowSamples(); ++i)
                        {
                            ASSERT_NEAR(row[i], 200, 2) << components << " components";
                        }
                    }
                    EXPECT_EQ(rows, 10u);
                }
            }
        }

        TEST(ScanLineReader, DctPictureThatIsNotThePreviewIsRefused)
        {
            const std::string jpeg = FlatJpeg(20, 10, 1, 200, false);
            EXPECT_THAT(
                RowsOf(Separation(20, 11, "DCTDecode", "Binary", jpeg)), HasSubstr("size is not width x height"));
            EXPECT_THAT(
                RowsOf(Separation(20, 10, "DCTDecode", "Binary", jpeg, "/CIP3PreviewImageComponents 4 def\n")),
                HasSubstr("another number of components"));
            EXPECT_THAT(
                RowsOf(Separation(20, 10, "DCTDecode", "Binary", jpeg, "/CIP3PreviewImageBitsPerComp 1 def\n")),
                HasSubstr("8 bits per component"));
            EXPECT_THAT(
                RowsOf(Separation(20, 10, "DCTDecode", "ASCIIHexDecode", "ffd8ffd9>")), HasSubstr("DCT data: "));
            EXPECT_THAT(RowsOf(Separation(20, 10, "DCTDecode", "ASCIIHexDecode", "ffd8ff>")), HasSubstr("cut off"));
            EXPECT_THAT(
                RowsOf(Separation(20, 10, "DCTDecode", "ASCIIHexDecode", "ffd8qq>")), HasSubstr("is not a digit"));
        }

        TEST(ScanLineReader, DataThatEndsEarlyNamesTheRow)
        {
            EXPECT_EQ(
                RowsOf(Separation(4, 3, "RunLengthDecode", "ASCIIHexDecode", "fdff fd00 02010203 80>")),
                "preview's data ends in row 3 of 3");
            EXPECT_EQ(RowsOf(HexPixels(4, 2, "00000000>")), "preview's data ends in row 2 of 2");
        }

        TEST(ScanLineReader, SizeThatTheDataCannotHoldIsRefusedBeforeMemoryIsTaken)
        {
            EXPECT_THAT(
                RowsOf(Separation(2147483647, 2147483647, "RunLengthDecode", "ASCII85Decode", "zzzz~>")),
                HasSubstr("cannot hold it"));
            EXPECT_THAT(
                RowsOf(Separation(60000, 60000, "DCTDecode", "ASCIIHexDecode", "ffd8ffd9>")),
                HasSubstr("cannot hold it"));
        }

        TEST(ScanLineReader, CompressionThatIsNotKnownIsNamed)
        {
            EXPECT_EQ(
                RowsOf(Separation(1, 1, "LZWDecode", "ASCIIHexDecode", "00>")),
                "compression /LZWDecode is not one that this reader knows");
        }
    }
}
