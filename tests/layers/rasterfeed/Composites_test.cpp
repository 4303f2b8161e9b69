// Single inks of files that hold several: each channel against the rule that made it, alone and with others at once.
#include "tests/layers/rasterfeed/Delivery.h"
#include "tests/layers/rasterfeed/PlainView.h"
#include "tests/support/TiffEditor.h"

#include <gmock/gmock.h>

namespace RasterFeedTest
{
    namespace
    {
        using testing::HasSubstr;
        using testing::StartsWith;
        using TestSupport::InkRule;
        using TestSupport::MakePages;
        using TestSupport::MixedInks;
        using TestSupport::TiffEditor;
        using TestSupport::TiffForm;
        using Values = std::initializer_list<std::uint16_t>;

        TiffForm Composite(std::uint16_t samples, std::uint16_t planar = PLANARCONFIG_CONTIG)
        {
            TiffForm form;
            form.samples = samples;
            form.planar = planar;
            form.photometric = PHOTOMETRIC_SEPARATED;
            form.resolution = 600;
            return form;
        }

        RasterFeedSelection Choice(std::uint32_t page, std::uint32_t channel, double resolution = 0)
        {
            RasterFeedSelection selection;
            selection.page = page;
            selection.channel = channel;
            selection.resolution = resolution;
            return selection;
        }

        /// What a file with that channel as its only one would give.
        std::vector<std::string>
        Truth(const TiffForm& form, const InkRule& rule, const RasterFeedSelection& selection, unsigned channel)
        {
            const auto single = [&](std::uint32_t x, std::uint32_t y) { return rule(channel - 1, x, y); };
            PlainImage image = Turned(Upright(StoredImage(form, single), form.orientation), selection.orientation);
            return selection.resolution == 0 ? image.lines : Reduced(image, selection.resolution).lines;
        }

        /// Every channel, alone and after the others, as it is and reduced.
        void ExpectChannels(const TiffForm& form, const InkRule& rule, RasterFeedOrientation orientation)
        {
            const std::string tiff = MakePages({form}, rule);
            for (const double resolution : {0.0, 127.0})
            {
                RasterFeedSelection selection = Choice(1, 0, resolution);
                selection.orientation = orientation;
                std::vector<std::uint32_t> channels;
                std::vector<std::string> all;
                for (std::uint32_t channel = form.samples; channel > 0; --channel)
                {
                    selection.channel = channel;
                    const Delivery delivery = DeliverView(tiff, selection);
                    const std::vector<std::string> truth = Truth(form, rule, selection, channel);
                    ASSERT_TRUE(delivery.IsComplete()) << ReasonFor(tiff, RasterFeedDepth::Lines, selection);
                    ASSERT_EQ(delivery.lines, truth) << "channel " << channel << " at " << resolution;
                    channels.push_back(channel);
                    all.insert(all.end(), truth.begin(), truth.end());
                }
                ASSERT_EQ(DeliverChannels(tiff, selection, channels).lines, all) << "at " << resolution;
                const bool isShared = form.planar == PLANARCONFIG_CONTIG && resolution != 0;
                ASSERT_EQ(Describe(tiff, selection).sharesDecoding, isShared);
            }
        }
    }

    TEST(Composites, EveryDepthCodingAndLayout)
    {
        struct Coding
        {
            std::uint16_t compression;
            std::uint16_t predictor;
        };
        int made = 0;
        for (const std::uint16_t planar : Values{PLANARCONFIG_CONTIG, PLANARCONFIG_SEPARATE})
        {
            for (const std::uint16_t bits : Values{1, 2, 4, 8, 16})
            {
                for (const Coding& coding :
                     {Coding{COMPRESSION_NONE, 0}, Coding{COMPRESSION_PACKBITS, 0}, Coding{COMPRESSION_LZW, 2},
                      Coding{COMPRESSION_ADOBE_DEFLATE, 2}, Coding{COMPRESSION_ZSTD, 0}, Coding{COMPRESSION_LZMA, 0},
                      Coding{COMPRESSION_CCITTFAX4, 0}})
                {
                    if (coding.compression == COMPRESSION_CCITTFAX4 && (bits != 1 || planar == PLANARCONFIG_CONTIG))
                    {
                        continue;
                    }
                    // The layouts, byte orders and turns take their turns.
                    for (const std::uint32_t rowsPerStrip : {5u, 23u, 0u})
                    {
                        const int turn = ++made;
                        TiffForm form = Composite(static_cast<std::uint16_t>(2 + turn % 5), planar);
                        form.bits = bits;
                        form.compression = coding.compression;
                        form.predictor = bits >= 8 ? coding.predictor : std::uint16_t{0};
                        form.rowsPerStrip = rowsPerStrip;
                        form.tileWidth = rowsPerStrip == 0 ? 16 : 0;
                        form.tileLength = form.tileWidth;
                        form.orientation = static_cast<std::uint16_t>(1 + turn % 8);
                        form.bigEndian = turn % 2 == 0;
                        form.bigTiff = turn % 3 == 0;
                        SCOPED_TRACE(
                            "planar " + std::to_string(planar) + ", bits " + std::to_string(bits) + ", samples " +
                            std::to_string(form.samples) + ", compression " + std::to_string(coding.compression) +
                            ", rows " + std::to_string(rowsPerStrip) + ", orientation " +
                            std::to_string(form.orientation));
                        ASSERT_NO_FATAL_FAILURE(
                            ExpectChannels(form, MixedInks(bits), static_cast<RasterFeedOrientation>(turn / 3 % 8)));
                    }
                }
            }
        }
    }

    TEST(Composites, ThirtyTwoInksAndNoMore)
    {
        for (const std::uint16_t bits : Values{1, 8})
        {
            TiffForm form = Composite(32);
            form.bits = bits;
            form.compression = COMPRESSION_ADOBE_DEFLATE;
            ASSERT_NO_FATAL_FAILURE(ExpectChannels(form, MixedInks(bits), RasterFeedOrientation::Flip90));
        }
        const std::string tiff = MakePages({Composite(33)}, MixedInks(8));
        EXPECT_EQ(
            ReasonFor(tiff, RasterFeedDepth::Header, Choice(1, 33)),
            "page 1, channel 33: 33 samples per pixel (Separated); one, and 1 to 32 of Separated, are accepted");
    }

    TEST(Composites, LinesTooLongToHoldAreReadAgainForEachChannel)
    {
        // 1.2 MiB in one strip, which is read line by line: the decoder goes back to its start.
        for (const std::uint16_t compression : Values{COMPRESSION_LZW, COMPRESSION_PACKBITS, COMPRESSION_ADOBE_DEFLATE})
        {
            TiffForm form = Composite(4);
            form.width = 700;
            form.height = 450;
            form.rowsPerStrip = 450;
            form.compression = compression;
            ASSERT_NO_FATAL_FAILURE(ExpectChannels(form, MixedInks(8), RasterFeedOrientation::Rotate0));
        }
    }

    TEST(Composites, JpegIsTakenAsThePhotometricSaysWhateverItsMarkersSay)
    {
        // Blocks of one value have no frequencies to lose: at quality 100 the round trip is exact.
        TiffForm form = Composite(4);
        form.width = 40;
        form.height = 24;
        form.compression = COMPRESSION_JPEG;
        const InkRule rule = [](unsigned sample, std::uint32_t x, std::uint32_t y)
        { return (x / 8 * 37 + y / 8 * 90 + sample * 50) % 256; };
        for (const std::uint16_t planar : Values{PLANARCONFIG_CONTIG, PLANARCONFIG_SEPARATE})
        {
            form.planar = planar;
            form.rowsPerStrip = 8;
            ASSERT_NO_FATAL_FAILURE(ExpectChannels(form, rule, RasterFeedOrientation::Rotate180));
        }

        // Marked as CMYK or YCCK by APP14, which in a file of its own would turn and convert the values.
        form.planar = PLANARCONFIG_CONTIG;
        form.rowsPerStrip = form.height;
        const std::string plain = MakePages({form}, rule);
        for (const char transform : {'\0', '\2'})
        {
            TiffEditor editor(plain);
            const std::uint64_t place = editor.Get(TIFFTAG_STRIPOFFSETS);
            std::string strip = plain.substr(place, editor.Get(TIFFTAG_STRIPBYTECOUNTS));
            strip.insert(
                2, std::string(
                       "\xff\xee\0\x0e"
                       "Adobe\0\x64\0\0\0\0",
                       15) +
                       transform);
            TiffEditor marked(plain + strip);
            marked.Set(TIFFTAG_STRIPOFFSETS, TIFF_LONG, {plain.size()});
            marked.Set(TIFFTAG_STRIPBYTECOUNTS, TIFF_LONG, {strip.size()});
            const Delivery delivery = DeliverView(marked.Bytes(), Choice(1, 2));
            EXPECT_EQ(delivery.lines, Truth(form, rule, {}, 2))
                << ReasonFor(marked.Bytes(), RasterFeedDepth::Lines, Choice(1, 2));
        }
    }

    TEST(Composites, PagesCountEveryDirectoryAndEitherNumberAloneIsEnough)
    {
        TiffForm thumbnail;
        thumbnail.width = 5;
        thumbnail.subfileType = FILETYPE_REDUCEDIMAGE;
        TiffForm single;
        single.width = 7;
        const TiffForm composite = Composite(4);
        const InkRule rule = MixedInks(8);
        const std::string tiff = MakePages({thumbnail, single, composite}, rule);
        const auto width = [&](std::uint32_t page, std::uint32_t channel)
        { return DeliverView(tiff, Choice(page, channel)).header.lineLength; };
        EXPECT_EQ(width(0, 0), 7u);
        EXPECT_EQ(width(1, 1), 5u);
        EXPECT_EQ(width(0, 1), 5u);
        EXPECT_EQ(width(2, 0), 7u);
        EXPECT_EQ(DeliverView(tiff, Choice(3, 0)).lines, Truth(composite, rule, {}, 1));
        EXPECT_EQ(DeliverView(tiff, Choice(3, 4)).lines, Truth(composite, rule, {}, 4));

        const auto reason = [&](std::uint32_t page, std::uint32_t channel)
        { return ReasonFor(tiff, RasterFeedDepth::Header, Choice(page, channel)); };
        EXPECT_EQ(reason(4, 1), "page 4, channel 1: the file has 3 pages");
        EXPECT_EQ(reason(3, 5), "page 3, channel 5: 4 samples per pixel (Separated); the page has no channel 5");
        EXPECT_EQ(reason(2, 2), "page 2, channel 2: 1 sample per pixel (MinIsBlack); the page has no channel 2");
        EXPECT_THAT(reason(4000000000, 1), HasSubstr("only the first 4096 pages are counted"));

        TiffEditor circle(MakePages({thumbnail}, rule));
        circle.SetNext(circle.DirectoryOffset());
        EXPECT_EQ(
            ReasonFor(circle.Bytes(), RasterFeedDepth::Header, Choice(2, 1)),
            "page 2, channel 1: the pages run in a circle after page 2; a chain with an end is needed");
    }

    TEST(Composites, FormsThatHaveNoInksAreRefusedWithTheReason)
    {
        const auto reason = [](TiffForm form, std::uint32_t channel)
        { return ReasonFor(MakePages({form}, MixedInks(form.bits)), RasterFeedDepth::Header, Choice(1, channel)); };
        TiffForm rgb = Composite(3);
        rgb.photometric = PHOTOMETRIC_RGB;
        EXPECT_EQ(
            reason(rgb, 1),
            "page 1, channel 1: 3 samples per pixel (RGB); one, and 1 to 32 of Separated, are accepted");
        TiffForm fax = Composite(4);
        fax.bits = 1;
        TiffEditor editor(MakePages({fax}, MixedInks(1)));
        editor.Set(TIFFTAG_COMPRESSION, TIFF_SHORT, {COMPRESSION_CCITTFAX4});
        EXPECT_THAT(
            ReasonFor(editor.Bytes(), RasterFeedDepth::Header, Choice(1, 1)),
            HasSubstr("CCITT compression of 4 samples that are stored together; a plane for each is accepted"));

        // A plane that is not all there does not hinder the others.
        TiffForm planar = Composite(4, PLANARCONFIG_SEPARATE);
        planar.rowsPerStrip = planar.height;
        TiffEditor cut(MakePages({planar}, MixedInks(8)));
        cut.Set(TIFFTAG_STRIPBYTECOUNTS, TIFF_LONG, {851, 851, 851, 10});
        EXPECT_EQ(DeliverView(cut.Bytes(), Choice(1, 3)).lines, Truth(planar, MixedInks(8), {}, 3));
        EXPECT_THAT(
            ReasonFor(cut.Bytes(), RasterFeedDepth::Header, Choice(1, 4)),
            StartsWith("page 1, channel 4: strip 4 of 4 has 10 bytes of 851"));

        for (const std::vector<std::uint32_t>& channels :
             {std::vector<std::uint32_t>{}, {1, 0}, {1, 5}, std::vector<std::uint32_t>(33, 1)})
        {
            EXPECT_EQ(
                DeliverChannels(MakePages({Composite(4)}, MixedInks(8)), {}, channels).end,
                Delivery::End::HeaderFailed);
        }
    }
}
