#include "ppf/DocumentReader.h"
#include "ppf/InkColumns.h"
#include "ppf/Pictures.h"
#include "ppf/PngWriter.h"
#include "tests/tools/ppf/Files.h"

#include <gmock/gmock.h>
#include <png.h>

#include <sstream>

namespace PpfTest
{
    using namespace Ppf;

    namespace
    {
        using testing::ElementsAre;
        using testing::ElementsAreArray;

        struct Placement
        {
            const char* matrix;
            int width;
            int height;
            const char* pixels;
        };

        /// One picture, 1 2 3 over 4 5 6, as it is stored in each of the eight orientations.
        constexpr Placement Placements[] = {
            {"3 0 0 -2 0 2", 3, 2, "010203 040506>"},  {"3 0 0 2 0 0", 3, 2, "040506 010203>"},
            {"-3 0 0 -2 3 2", 3, 2, "030201 060504>"}, {"-3 0 0 2 3 0", 3, 2, "060504 030201>"},
            {"0 3 2 0 0 0", 2, 3, "0401 0502 0603>"},  {"0 3 -2 0 2 0", 2, 3, "0104 0205 0306>"},
            {"0 -3 2 0 0 3", 2, 3, "0603 0502 0401>"}, {"0 -3 -2 0 2 3", 2, 3, "0306 0205 0104>"},
        };

        std::string FileOf(const Placement& placement)
        {
            return FrontOf(
                "(K)", Separation(
                           placement.width, placement.height, "None", "ASCIIHexDecode", placement.pixels,
                           "/CIP3PreviewImageMatrix [" + std::string(placement.matrix) +
                               "] def\n/CIP3PreviewImageResolution [10 20] def\n"));
        }

        TEST(Pictures, AllEightOrientationsComeOutUpright)
        {
            for (const Placement& placement : Placements)
            {
                const std::string bytes = FileOf(placement);
                const Document document = ReadDocument(bytes);
                ASSERT_EQ(Text(document.damage), "") << placement.matrix;
                const Preview& preview = document.sheets[0].surfaces[0].previews[0];
                EXPECT_TRUE(Spans(*preview.matrix, preview.width, preview.height)) << placement.matrix;
                EXPECT_EQ(preview.UprightWidth(), 3u) << placement.matrix;
                EXPECT_EQ(preview.UprightHeight(), 2u) << placement.matrix;
                EXPECT_EQ(preview.UprightResolution()->x, placement.width == 3 ? 10 : 20) << placement.matrix;

                std::vector<int> drawn;
                DrawUpright(
                    document, preview, 0, [&](const unsigned char* row) { drawn.insert(drawn.end(), row, row + 3); });
                EXPECT_THAT(drawn, ElementsAre(1, 2, 3, 4, 5, 6)) << placement.matrix;
                EXPECT_THAT(Measure(document, preview).inks[0].sums, ElementsAre(5u, 7u, 9u)) << placement.matrix;
            }
        }

        TEST(Pictures, ScaledPixelIsTheMeanOfThoseThatItStandsFor)
        {
            const unsigned char rows[3][5] = {{0, 1, 10, 11, 255}, {2, 3, 12, 13, 255}, {16, 32, 48, 64, 80}};
            Scaler scaler(5, 3, 3);
            for (const auto& row : rows)
            {
                scaler.Add(row);
            }
            const Picture picture = scaler.Finish();
            EXPECT_EQ(picture.width, 3u);
            EXPECT_EQ(picture.height, 2u);
            // 1.5 and 11.5 are rounded up; the right column and the lower row stand for fewer pixels.
            EXPECT_THAT(picture.ink, ElementsAre(2, 12, 255, 24, 56, 80));
        }

        TEST(PngWriter, PictureReadsBackWithItsResolution)
        {
            std::ostringstream stream;
            PngWriter writer(stream, 3, 2, PngWriter::Colours::Grey, Resolution{254, 508});
            const unsigned char rows[] = {1, 2, 3, 4, 5, 6};
            writer.WriteRow(rows);
            writer.WriteRow(rows + 3);
            writer.Finish();
            const std::string png = stream.str();

            png_image image = {};
            image.version = PNG_IMAGE_VERSION;
            ASSERT_TRUE(png_image_begin_read_from_memory(&image, png.data(), png.size()));
            EXPECT_EQ(image.width, 3u);
            EXPECT_EQ(image.height, 2u);
            image.format = PNG_FORMAT_GRAY;
            std::vector<unsigned char> pixels(6);
            ASSERT_TRUE(png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr));
            EXPECT_THAT(pixels, ElementsAreArray(rows));
            // 10000 and 20000 pixels per metre, unit 1.
            EXPECT_NE(png.find(std::string("pHYs\0\0\x27\x10\0\0\x4E\x20\1", 13)), std::string::npos);
        }
    }
}
