// Reduced views in parts, which joined are the whole.
#include "tests/layers/rasterfeed/Delivery.h"
#include "tests/support/TiffMaker.h"

#include <gmock/gmock.h>

#include <iterator>

namespace RasterFeedTest
{
    namespace
    {
        using TestSupport::MakeTiff;
        using TestSupport::MixedSamples;
        using TestSupport::TiffForm;

        TiffForm Plate(std::uint16_t compression)
        {
            TiffForm form;
            form.width = 133;
            form.height = 75;
            form.bits = 1;
            form.compression = compression;
            form.rowsPerStrip = 6;
            form.resolution = 17;
            return form;
        }

        RasterFeedSelection Part(std::uint32_t part, std::uint32_t parts)
        {
            RasterFeedSelection selection;
            selection.resolution = 5; // lines of 3.4 rows: the parts meet inside of a row and of a strip
            selection.part = part;
            selection.parts = parts;
            return selection;
        }
    }

    TEST(Parts, JoinToTheWholeView)
    {
        TiffForm tiles = Plate(COMPRESSION_LZW);
        tiles.tileWidth = 32;
        tiles.tileLength = 16;
        TiffForm turned = Plate(COMPRESSION_NONE);
        turned.orientation = ORIENTATION_BOTRIGHT;
        const std::pair<TiffForm, std::uint32_t> forms[] = {
            {Plate(COMPRESSION_CCITTFAX4), 3},
            {Plate(COMPRESSION_CCITTRLE), 3},
            {Plate(COMPRESSION_ADOBE_DEFLATE), 3},
            {Plate(COMPRESSION_NONE), 3},
            {tiles, 1},
            {turned, 3}};
        for (const auto& [form, mostParts] : forms)
        {
            const std::string tiff = MakeTiff(form, MixedSamples(1));
            const std::vector<std::string> whole = DeliverView(tiff, Part(0, 1)).lines;
            ASSERT_EQ(whole.size(), 22u);
            EXPECT_EQ(Describe(tiff, Part(0, 1)).mostParts, mostParts) << form.compression;
            for (std::uint32_t parts = 1; parts <= mostParts; ++parts)
            {
                std::vector<std::string> joined;
                for (std::uint32_t part = 0; part < parts; ++part)
                {
                    const Delivery delivery = DeliverView(tiff, Part(part, parts));
                    ASSERT_TRUE(delivery.IsComplete());
                    std::copy(delivery.lines.begin(), delivery.lines.end(), std::back_inserter(joined));
                }
                EXPECT_EQ(joined, whole) << form.compression << " in " << parts;
            }
            EXPECT_EQ(DeliverView(tiff, Part(0, mostParts + 1)).end, Delivery::End::HeaderFailed) << form.compression;
        }
    }

    TEST(Parts, ThereAreNoneOfViewsThatAreHeldOrOfTheImageItself)
    {
        const std::string tiff = MakeTiff(Plate(COMPRESSION_CCITTFAX4), MixedSamples(1));
        RasterFeedSelection selection = Part(0, 1);
        selection.orientation = RasterFeedOrientation::Rotate90;
        EXPECT_EQ(Describe(tiff, selection).mostParts, 1u);
        EXPECT_EQ(Describe(tiff, {}).mostParts, 1u);
        EXPECT_EQ(DeliverView(tiff, Part(2, 2)).end, Delivery::End::HeaderFailed) << "there is no third half";
        EXPECT_EQ(DeliverView(tiff, Part(0, 0)).end, Delivery::End::HeaderFailed);
    }
}
