#include "ppf/DocumentReader.h"
#include "ppf/ScanLineReader.h"
#include "tests/tools/ppf/Files.h"
#include "tests/tools/ppf/Jpeg.h"

#include <gmock/gmock.h>

namespace PpfTest
{
    using namespace Ppf;

    namespace
    {
        using testing::HasSubstr;

        /// Rows of the only separation of a file, or the failure to read them.
        std::string RowsOf(const std::string& separation)
        {
            const std::string bytes = FrontOf("(K)", separation);
            const Document document = ReadDocument(bytes);
            EXPECT_EQ(Text(document.damage), "");
            try
            {
                return Rows(document, document.sheets.at(0).surfaces.at(0).previews.at(0));
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
            EXPECT_EQ(RowsOf(Separation(5, 2, "None", "ASCIIHexDecode", "ffffff00 01\n02ffffffff>")), expected);
            EXPECT_EQ(RowsOf(Separation(5, 2, "None", "ASCII85Decode", "s8W*!!<W<$s8N~>")), expected);
            EXPECT_EQ(RowsOf(Separation(5, 2, "RunLengthDecode", "Binary", runs)), expected);
            EXPECT_EQ(
                RowsOf(Separation(5, 2, "RunLengthDecode", "ASCIIHexDecode", "feff010001\n0002fdff80>")), expected);
        }

        TEST(ScanLineReader, RunsMayCrossRowsAndBlocks)
        {
            // 400 x 1000 pixels, more than one pull through the decoders, in runs of 128 that no row begins with.
            constexpr std::size_t Size = 400 * 1000;
            std::string tokens;
            for (std::size_t i = 0; i < Size / 128; ++i)
            {
                tokens += '\x81';
                tokens += static_cast<char>(i & 0xFF);
            }
            const std::string bytes =
                FrontOf("(K)", Separation(400, 1000, "RunLengthDecode", "Binary", tokens + "\x80"));
            const Document document = ReadDocument(bytes);
            ScanLineReader reader(document, document.sheets.at(0).surfaces.at(0).previews.at(0));
            std::size_t pixel = 0;
            while (const unsigned char* row = reader.Next())
            {
                for (std::size_t x = 0; x < 400; ++x, ++pixel)
                {
                    ASSERT_EQ(row[x], pixel / 128 & 0xFF) << "pixel " << pixel;
                }
            }
            EXPECT_EQ(pixel, Size);
            EXPECT_EQ(reader.CountExcess(), 0u);
        }

        TEST(ScanLineReader, OneBitRowsBeginAtFullBytes)
        {
            const std::string oneBit = "/CIP3PreviewImageBitsPerComp 1 def\n";
            EXPECT_EQ(
                RowsOf(Separation(10, 2, "None", "ASCIIHexDecode", "a5c0 003f>", oneBit)),
                "ff00ff0000ff00ffffff/00000000000000000000");
            // Two pixels of four components in a byte.
            EXPECT_EQ(
                RowsOf(Separation(
                    1, 2, "None", "ASCIIHexDecode", "8f 70>", oneBit + "/CIP3PreviewImageComponents 4 def\n")),
                "ff000000/00ffffff");
        }

        TEST(ScanLineReader, DctPicturesOfOneAndFourComponentsAreDecoded)
        {
            for (const unsigned components : {1u, 4u})
            {
                for (const bool progressive : {false, true})
                {
                    const std::string jpeg = FlatJpeg(20, 10, components, 200, progressive);
                    const std::string bytes = FrontOf(
                        "(C)(M)(Y)(K)", Separation(
                                            20, 10, "DCTDecode", "Binary", jpeg,
                                            "/CIP3PreviewImageComponents " + std::to_string(components) + " def\n"));
                    const Document document = ReadDocument(bytes);
                    ASSERT_EQ(Text(document.damage), "");
                    const Preview& preview = document.sheets[0].surfaces[0].previews[0];
                    EXPECT_EQ(preview.data, jpeg);
                    ScanLineReader reader(document, preview);
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
            EXPECT_EQ(
                RowsOf(Separation(4, 2, "None", "ASCIIHexDecode", "00000000>")), "preview's data ends in row 2 of 2");
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

        TEST(ScanLineReader, DataBehindTheLastRowIsCounted)
        {
            const std::string bytes = FrontOf("(K)", Separation(2, 1, "None", "ASCIIHexDecode", "00ff 010203>"));
            const Document document = ReadDocument(bytes);
            ScanLineReader reader(document, document.sheets[0].surfaces[0].previews[0]);
            ASSERT_NE(reader.Next(), nullptr);
            EXPECT_EQ(reader.Next(), nullptr);
            EXPECT_EQ(reader.CountExcess(), 3u);
        }
    }
}
