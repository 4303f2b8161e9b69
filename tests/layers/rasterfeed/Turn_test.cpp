// Images turned by the file and by the host, as they are and reduced, against the moves one after the other.
#include "tests/layers/rasterfeed/Delivery.h"
#include "tests/layers/rasterfeed/PlainView.h"
#include "tests/support/TiffEditor.h"

#include <gmock/gmock.h>

namespace RasterFeedTest
{
    namespace
    {
        using testing::HasSubstr;
        using TestSupport::MakeTiff;
        using TestSupport::MixedSamples;
        using TestSupport::SampleRule;
        using TestSupport::TiffEditor;
        using TestSupport::TiffForm;

        /// Every orientation of the file with every one of the host: the pixels, the size and the resolution are those of the
        /// moves.
        void ExpectTurned(TiffForm form, double resolution)
        {
            const SampleRule rule = MixedSamples(form.bits);
            for (std::uint16_t stated = 1; stated <= 8; ++stated)
            {
                form.orientation = stated;
                const std::string tiff = MakeTiff(form, rule);
                for (int wanted = 0; wanted < 8; ++wanted)
                {
                    RasterFeedSelection selection;
                    selection.orientation = static_cast<RasterFeedOrientation>(wanted);
                    selection.resolution = resolution;
                    PlainImage expected = Turned(Upright(StoredImage(form, rule), stated), selection.orientation);
                    if (resolution != 0)
                    {
                        expected = Reduced(expected, resolution);
                    }
                    const Delivery delivery = DeliverView(tiff, selection);
                    ASSERT_TRUE(delivery.IsComplete()) << stated << ", " << wanted;
                    ASSERT_EQ(delivery.header.lineLength, expected.lines[0].size()) << stated << ", " << wanted;
                    ASSERT_EQ(delivery.lines, expected.lines) << "file " << stated << ", host " << wanted;
                    ASSERT_DOUBLE_EQ(delivery.resolution, expected.across) << "file " << stated << ", host " << wanted;
                }
            }
        }

        /// An image of more than one band, in each way of finding rows.
        std::vector<TiffForm> Forms(std::uint16_t bits)
        {
            TiffForm form;
            form.bits = bits;
            form.width = 71;
            form.height = 150;
            form.resolution = 200;
            form.yResolution = 300;
            form.rowsPerStrip = 32;
            std::vector<TiffForm> forms = {form};
            form.compression = bits == 1 ? COMPRESSION_CCITTFAX4 : COMPRESSION_LZW;
            form.photometric = PHOTOMETRIC_MINISWHITE;
            forms.push_back(form);
            form.tileWidth = 32;
            form.tileLength = 48;
            forms.push_back(form);
            return forms;
        }
    }

    TEST(Turn, EveryOrientationOfTheFileAndTheHostMovesPixelsAndResolutions)
    {
        for (const std::uint16_t bits : std::initializer_list<std::uint16_t>{1, 4, 8, 16})
        {
            for (const TiffForm& form : Forms(bits))
            {
                ExpectTurned(form, 0);
                // 200 and 300 to 61: neither the first nor the last cell ends with a pixel, so that each end has its own.
                ExpectTurned(form, 61);
            }
        }
    }

    TEST(Turn, QuarterOfMoreThan256MebibytesIsRefusedAndItsReductionIsNot)
    {
        // Hardly any data: one strip of a single value.
        TiffForm form;
        form.width = 16385;
        form.height = 16384;
        form.bits = 1;
        form.compression = COMPRESSION_CCITTFAX4;
        form.rowsPerStrip = form.height;
        form.resolution = 2400;
        const std::string tiff = MakeTiff(form, [](std::uint32_t, std::uint32_t) { return 1; });
        RasterFeedSelection selection;
        selection.orientation = RasterFeedOrientation::Flip270;
        EXPECT_EQ(DeliverView(tiff, selection).end, Delivery::End::HeaderFailed);
        EXPECT_EQ(
            ReasonFor(tiff, RasterFeedDepth::Header, selection),
            "a quarter turn of 16384 x 16385 pixels, which takes 268451840 bytes of memory; up to 268435456 are "
            "accepted: "
            "ask for a lower resolution or for no quarter turn");
        selection.orientation = RasterFeedOrientation::Flip180;
        EXPECT_EQ(ReasonFor(tiff, RasterFeedDepth::Header, selection), "");
        selection.orientation = RasterFeedOrientation::Rotate90;
        selection.resolution = 50.8;
        const Delivery delivery = DeliverView(tiff, selection);
        ASSERT_TRUE(delivery.IsComplete());
        EXPECT_EQ(delivery.lines, std::vector<std::string>(347, std::string(347, '\xff')));
    }
}
