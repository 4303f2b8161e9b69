#include "ppf/InkColumns.h"
#include "ppf/Pictures.h"
#include "tests/tools/ppf/Files.h"

#include <gmock/gmock.h>

namespace PpfTest
{
    using namespace Ppf;

    namespace
    {
        using testing::ElementsAre;

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
                "(K)", HexPixels(
                           placement.width, placement.height, placement.pixels,
                           "/CIP3PreviewImageMatrix [" + std::string(placement.matrix) +
                               "] def\n/CIP3PreviewImageResolution [10 20] def\n"));
        }

        TEST(Pictures, AllEightOrientationsComeOutUpright)
        {
            for (const Placement& placement : Placements)
            {
                SCOPED_TRACE(placement.matrix);
                const SoundFile file(FileOf(placement));
                const Preview& preview = file.Preview();
                EXPECT_TRUE(Spans(*preview.matrix, preview.width, preview.height));
                EXPECT_EQ(preview.UprightWidth(), 3u);
                EXPECT_EQ(preview.UprightHeight(), 2u);
                EXPECT_EQ(preview.UprightResolution()->x, placement.width == 3 ? 10 : 20);

                std::vector<int> drawn;
                DrawUpright(
                    file.document, preview, 0,
                    [&](const unsigned char* row) { drawn.insert(drawn.end(), row, row + 3); });
                EXPECT_THAT(drawn, ElementsAre(1, 2, 3, 4, 5, 6));
                EXPECT_THAT(Measure(file.document, preview).inks[0].sums, ElementsAre(5u, 7u, 9u));
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
    }
}
