// Reduced images against their definition, worked out pixel by pixel.
#include "rasterfeed/CellEdges.h"
#include "rasterfeed/MeanPixel.h"
#include "tests/layers/rasterfeed/Delivery.h"
#include "tests/layers/rasterfeed/PlainView.h"
#include "tests/support/TiffEditor.h"

#include <gmock/gmock.h>

#include <limits>

namespace RasterFeedTest
{
    namespace
    {
        using testing::Each;
        using testing::ElementsAre;
        using testing::HasSubstr;
        using testing::StartsWith;
        using TestSupport::MakeTiff;
        using TestSupport::MixedSamples;
        using TestSupport::SampleRule;
        using TestSupport::TiffEditor;
        using TestSupport::TiffForm;
        using Values = std::initializer_list<std::uint16_t>;

        RasterFeedSelection To(double resolution)
        {
            RasterFeedSelection selection;
            selection.resolution = resolution;
            return selection;
        }

        /// The view equals the definition, and its header gives the resolution back.
        void ExpectReduced(const std::string& tiff, const PlainImage& image, double resolution)
        {
            const PlainImage expected = Reduced(image, resolution);
            const Delivery delivery = DeliverView(tiff, To(resolution));
            ASSERT_TRUE(delivery.IsComplete());
            ASSERT_EQ(delivery.header.lineLength, expected.lines[0].size());
            ASSERT_EQ(delivery.lines, expected.lines);
            ASSERT_DOUBLE_EQ(delivery.resolution, resolution);
        }

        void ExpectReduced(const TiffForm& form, const SampleRule& rule, double resolution)
        {
            ExpectReduced(MakeTiff(form, rule), StoredImage(form, rule), resolution);
        }

        /// A line of `pixels` 8-bit pixels in `rows` equal rows, whose resolutions are these, reduced to 1 per inch.
        std::vector<std::string> ReducedLines(const std::string& pixels, std::uint32_t rows, double across, double down)
        {
            TiffForm form;
            form.width = static_cast<std::uint32_t>(pixels.size());
            form.height = rows;
            form.resolution = across;
            form.yResolution = down;
            return DeliverView(
                       MakeTiff(
                           form, [&](std::uint32_t x, std::uint32_t) { return static_cast<unsigned char>(pixels[x]); }),
                       To(1))
                .lines;
        }
    }

    TEST(Reduction, EveryDepthPolarityAndLayout)
    {
        for (const std::uint16_t bits : Values{1, 2, 4, 8, 16})
        {
            for (const std::uint16_t photometric : Values{PHOTOMETRIC_MINISBLACK, PHOTOMETRIC_MINISWHITE})
            {
                for (const std::uint32_t tile : {0u, 16u})
                {
                    TiffForm form;
                    form.width = 133;
                    form.height = 75;
                    form.bits = bits;
                    form.photometric = photometric;
                    form.tileWidth = tile;
                    form.tileLength = tile;
                    form.resolution = 1200;
                    SCOPED_TRACE(bits);
                    ExpectReduced(form, MixedSamples(bits), 50.8);
                    ExpectReduced(form, MixedSamples(bits), 1000);
                }
            }
        }
    }

    TEST(Reduction, GridOfSizesAndRatios)
    {
        // Around multiples of a word of 64 pixels, and of cells; ratios from just above 1 to more than the whole image.
        for (const std::uint32_t width : {1u, 2u, 63u, 64u, 65u, 128u, 200u})
        {
            for (const std::uint32_t height : {1u, 3u, 64u})
            {
                for (const std::uint16_t bits : Values{1, 8})
                {
                    TiffForm form;
                    form.width = width;
                    form.height = height;
                    form.bits = bits;
                    form.resolution = 2400;
                    form.yResolution = 2399.5;
                    const std::string tiff = MakeTiff(form, MixedSamples(bits));
                    for (const double resolution : {2399.4999, 1600.0, 1200.0, 801.3, 600.0, 37.0, 5.0, 1.0})
                    {
                        SCOPED_TRACE(
                            std::to_string(width) + " x " + std::to_string(height) + " of " + std::to_string(bits) +
                            " bits to " + std::to_string(resolution));
                        ExpectReduced(tiff, StoredImage(form, MixedSamples(bits)), resolution);
                    }
                }
            }
        }
    }

    TEST(Reduction, MeanIsRoundedToTheNearestAndAHalfUpwards)
    {
        EXPECT_THAT(ReducedLines({10, 11}, 2, 2, 2), ElementsAre(std::string{11}));         // 10.5
        EXPECT_THAT(ReducedLines({10, 10, 11}, 3, 3, 3), ElementsAre(std::string{10}));     // 10.33
        EXPECT_THAT(ReducedLines({10, 11, 11}, 3, 3, 3), ElementsAre(std::string{11}));     // 10.67
        EXPECT_THAT(ReducedLines({10, 10, 10, 11}, 2, 4, 2), ElementsAre(std::string{10})); // 10.25
    }

    TEST(Reduction, PixelThatAnEdgeCutsCountsInBothCellsByItsParts)
    {
        // Cells of one and a half columns: 90 + 0 / 2, and 0 / 2 + 60.
        EXPECT_THAT(ReducedLines({90, 0, 60}, 3, 1.5, 3), ElementsAre(std::string{60, 40}));
        // The same down.
        TiffForm form;
        form.width = 3;
        form.height = 3;
        form.resolution = 3;
        form.yResolution = 1.5;
        const std::uint32_t values[] = {90, 0, 60};
        const std::string tiff = MakeTiff(form, [&](std::uint32_t, std::uint32_t y) { return values[y]; });
        EXPECT_THAT(DeliverView(tiff, To(1)).lines, ElementsAre(std::string{60}, std::string{40}));
    }

    TEST(Reduction, WhatACellHasBeyondTheImageIsPaper)
    {
        // Three columns of ink in cells of two: the second is half outside, across and down.
        const std::string ink(3, '\0');
        EXPECT_THAT(ReducedLines(ink, 4, 2, 4), ElementsAre((std::string{0, '\x80'})));
        EXPECT_THAT(ReducedLines(ink, 3, 2, 2), ElementsAre((std::string{0, '\x80'}), (std::string{'\x80', '\xbf'})));
        // Less than half a cell makes no cell of its own, and is in none.
        EXPECT_THAT(ReducedLines(std::string(4, '\0') + '\xff', 4, 4, 4), ElementsAre(std::string(1, '\0')));
    }

    TEST(Reduction, LessThanAPixelBecomesOne)
    {
        EXPECT_THAT(ReducedLines(std::string(1, '\0'), 1, 2, 2), ElementsAre(std::string(1, '\xbf')));
        EXPECT_THAT(ReducedLines(std::string(1, '\0'), 1, 100, 100), ElementsAre(std::string(1, '\xff')));
        EXPECT_THAT(ReducedLines(std::string(200, '\0'), 300, 1000, 300), ElementsAre(std::string(1, '\xcc')));
    }

    TEST(Reduction, SumsThatPass64BitsAreExact)
    {
        // Cells of 5000 x 40000 and of 30000 x 30000 pixels, of which the image covers a part.
        for (const std::uint16_t bits : Values{1, 8, 16})
        {
            TiffForm form;
            form.width = 700;
            form.height = 600;
            form.bits = bits;
            form.photometric = PHOTOMETRIC_MINISWHITE;
            form.resolution = 5000;
            form.yResolution = 40000;
            ExpectReduced(form, MixedSamples(bits), 1);
            ExpectReduced(form, MixedSamples(bits), 9.7);
            form.resolution = 30000;
            form.yResolution = 30000;
            ExpectReduced(form, MixedSamples(bits), 1);
        }
        // 5000 x 1 pixels at 10^12: the sum passes 64 bits by the rows that are not there.
        TiffForm form;
        form.width = 5000;
        form.height = 1;
        RasterFeedSelection selection = To(1);
        for (const double resolution : {1e5, 1e12, 1e300, std::numeric_limits<double>::max()})
        {
            selection.inputResolution = resolution;
            const Delivery delivery = DeliverView(MakeTiff(form, MixedSamples(8)), selection);
            EXPECT_THAT(delivery.lines, ElementsAre("\xff")) << resolution;
        }
    }

    TEST(Reduction, MoreRowsThanSixteenBitsHold)
    {
        // 600 rows of paper to a cell; and of 255 and 254, so that no column is as its neighbour.
        TiffForm form;
        form.width = 1200;
        form.height = 1300;
        form.resolution = 600;
        const SampleRule rule = [](std::uint32_t x, std::uint32_t y) { return 255 - (x * 7 + y) % 2; };
        ExpectReduced(form, rule, 1);
        ExpectReduced(form, rule, 0.99);
    }

    TEST(Reduction, RepeatedAndEmptyRowsCountAsOftenAsTheyAre)
    {
        // Bands of equal rows that begin and end inside cells and at their edges.
        TiffForm form;
        form.width = 130;
        form.height = 200;
        form.bits = 1;
        form.resolution = 100;
        for (const std::uint32_t band : {1u, 2u, 7u, 10u, 33u})
        {
            const SampleRule rule = [band](std::uint32_t x, std::uint32_t y) -> std::uint32_t {
                return y / band % 3 == 0 ? 0 : y / band % 3 == 1 ? 1 : (x * 2654435761u + y / band) >> 13 & 1;
            };
            SCOPED_TRACE(band);
            ExpectReduced(form, rule, 10);
            ExpectReduced(form, rule, 9.3);
        }
    }

    TEST(Reduction, OnlyAnImageAboveBothLimitsInBothDirectionsIsReduced)
    {
        const auto size = [&](double across, double down, double resolution, double reduceAbove)
        {
            TiffForm form;
            form.resolution = across;
            form.yResolution = down;
            RasterFeedSelection selection = To(resolution);
            selection.reduceAbove = reduceAbove;
            const RasterFeedImageHeader header = DeliverView(MakeTiff(form, MixedSamples(8)), selection).header;
            return std::pair{header.lineLength, header.lineCount};
        };
        constexpr std::pair Kept = {37u, 23u};
        EXPECT_EQ(size(300, 200, 100, 0), std::pair(12u, 12u));
        EXPECT_EQ(size(300, 200, 100, 199), std::pair(12u, 12u));
        EXPECT_EQ(size(300, 200, 100, 200), Kept);
        EXPECT_EQ(size(300, 200, 199.5, 0), std::pair(25u, 23u));
        EXPECT_EQ(size(300, 200, 200, 0), Kept);
        EXPECT_EQ(size(300, 200, 250, 100), Kept);
        EXPECT_EQ(size(300, 200, 0, 100), Kept);
        EXPECT_EQ(size(200, 300, 100, 200), Kept);
        EXPECT_EQ(size(200, 300, 100, 199), std::pair(19u, 8u));
    }

    TEST(Reduction, InputResolutionStandsInPlaceOfTheFiles)
    {
        TiffForm form;
        form.resolution = 72;
        form.yResolution = 36;
        const std::string tiff = MakeTiff(form, MixedSamples(8));
        RasterFeedSelection selection = To(100);
        selection.inputResolution = 1000;
        Delivery delivery = DeliverView(tiff, selection);
        EXPECT_EQ(delivery.header.lineLength, 4u);
        EXPECT_EQ(delivery.header.lineCount, 2u);
        selection.resolution = 0;
        delivery = DeliverView(tiff, selection);
        EXPECT_EQ(delivery.header.lineLength, 37u);
        EXPECT_DOUBLE_EQ(delivery.resolution, 1000);
    }

    TEST(Reduction, ResolutionsAreTheFilesRatiosAndTheirUnit)
    {
        // 94500 / 1001 per cm: not what a float of it is.
        TiffForm form;
        form.width = 2000;
        form.height = 3;
        form.resolution = 1;
        const SampleRule rule = MixedSamples(8);
        TiffEditor editor(MakeTiff(form, rule));
        editor.Set(TIFFTAG_XRESOLUTION, TIFF_RATIONAL, {94500, 1001});
        editor.Set(TIFFTAG_YRESOLUTION, TIFF_RATIONAL, {60000, 7});
        editor.Set(TIFFTAG_RESOLUTIONUNIT, TIFF_SHORT, {RESUNIT_CENTIMETER});
        PlainImage image = StoredImage(form, rule);
        image.across = 94500.0 * 254 / (1001.0 * 100);
        image.down = 60000.0 * 254 / (7.0 * 100);
        ExpectReduced(editor.Bytes(), image, 50.8);
        // Without one down it is that across, also where that is the one of files that state none.
        editor.Remove(TIFFTAG_YRESOLUTION);
        image.down = image.across;
        ExpectReduced(editor.Bytes(), image, 50.8);
        editor.Remove(TIFFTAG_XRESOLUTION);
        image.across = 72;
        image.down = 72;
        ExpectReduced(editor.Bytes(), image, 50.8);
    }

    TEST(Reduction, ProbeTellsBothSizesAndResolutions)
    {
        TiffForm form;
        form.width = 200;
        form.height = 100;
        form.resolution = 600;
        form.yResolution = 300;
        RasterFeedSelection selection = To(60);
        selection.orientation = RasterFeedOrientation::Rotate90;
        const RasterFeedDescription reduced = Describe(MakeTiff(form, MixedSamples(8)), selection);
        EXPECT_TRUE(reduced.accepted && reduced.isReduced);
        EXPECT_EQ(reduced.width, 20u);
        EXPECT_EQ(reduced.height, 20u);
        EXPECT_DOUBLE_EQ(reduced.resolution, 60);
        EXPECT_EQ(reduced.inputWidth, 100u);
        EXPECT_EQ(reduced.inputHeight, 200u);
        EXPECT_EQ(reduced.inputAcross, 300);
        EXPECT_EQ(reduced.inputDown, 600);
        const RasterFeedDescription kept = Describe(MakeTiff(form, MixedSamples(8)), {});
        EXPECT_TRUE(kept.accepted && !kept.isReduced);
        EXPECT_EQ(kept.width, 200u);
        EXPECT_EQ(kept.inputWidth, 200u);
        EXPECT_EQ(kept.inputAcross, 600);
    }

    TEST(Reduction, DamageIsFoundAlsoInRowsThatNoCellTakes)
    {
        // 44 rows in cells of 10: the last four are in none.
        TiffForm form;
        form.height = 44;
        form.rowsPerStrip = 1;
        form.compression = COMPRESSION_LZW;
        form.resolution = 100;
        TiffEditor editor(MakeTiff(form, MixedSamples(8)));
        const std::string sound = editor.Bytes();
        ASSERT_TRUE(DeliverView(sound, To(10)).IsComplete());
        for (const auto& [row, lines] : {std::pair{43, 3u}, {42, 3u}, {25, 2u}})
        {
            std::string damaged = sound;
            damaged[editor.Get(TIFFTAG_STRIPOFFSETS, static_cast<std::size_t>(row))] = '\xff';
            const Delivery delivery = DeliverView(damaged, To(10));
            EXPECT_EQ(delivery.end, Delivery::End::LineFailed) << row;
            EXPECT_EQ(delivery.lines.size(), lines) << row;
            EXPECT_THAT(
                ReasonFor(damaged, RasterFeedDepth::Lines, To(10)),
                StartsWith("line " + std::to_string(row + 1) + " of 44: "));
        }
    }

    TEST(Reduction, SelectionsOutsideTheirRangeOrOrderAreRefused)
    {
        const std::string tiff = MakeTiff({}, MixedSamples(8));
        const double infinite = std::numeric_limits<double>::infinity();
        const double none = std::numeric_limits<double>::quiet_NaN();
        for (double RasterFeedSelection::*field :
             {&RasterFeedSelection::resolution, &RasterFeedSelection::reduceAbove,
              &RasterFeedSelection::inputResolution})
        {
            for (const double number : {-1.0, infinite, none})
            {
                RasterFeedSelection selection;
                selection.*field = number;
                EXPECT_EQ(DeliverView(tiff, selection).end, Delivery::End::HeaderFailed) << number;
            }
        }
        RasterFeedSelection selection;
        selection.orientation = static_cast<RasterFeedOrientation>(8);
        EXPECT_EQ(DeliverView(tiff, selection).end, Delivery::End::HeaderFailed);

        MemoryFile::Reset(tiff);
        const RasterFeedOpenRecord record = MemoryFile::Record();
        RasterFeedImageHeader header;
        for (const bool afterHeader : {false, true})
        {
            const RasterFeedHandle reader = RasterFeedInit(&record);
            ASSERT_NE(reader, nullptr);
            selection = {};
            EXPECT_EQ(afterHeader ? RasterFeedHeader(reader, &header) : RasterFeedSelect(reader, &selection), 0);
            EXPECT_NE(RasterFeedSelect(reader, &selection), 0) << afterHeader;
            EXPECT_NE(RasterFeedHeader(reader, &header), 0) << afterHeader;
            RasterFeedEnd(reader, nullptr);
        }
    }

    TEST(Reduction, EdgesAreRoundedWhereTheDefinitionPutsThem)
    {
        const auto edges = [](std::uint32_t pixels, std::uint32_t cells, double ratio, bool isFlipped)
        {
            const RasterFeed::CellEdges rule(pixels, cells, ratio, isFlipped);
            std::vector<std::int64_t> all;
            for (std::size_t i = 0; i <= cells; ++i)
            {
                all.push_back(rule[i]);
            }
            return all;
        };
        EXPECT_THAT(edges(10, 3, 3.0, false), ElementsAre(0, 3 << 16, 6 << 16, 9 << 16));
        EXPECT_THAT(edges(10, 3, 3.0, true), ElementsAre(1 << 16, 4 << 16, 7 << 16, 10 << 16));
        // Beyond the image's end, which is before its begin from the other side.
        EXPECT_THAT(edges(5, 2, 3.0, false), ElementsAre(0, 3 << 16, 6 << 16));
        EXPECT_THAT(edges(5, 2, 3.0, true), ElementsAre(-(1 << 16), 2 << 16, 5 << 16));
        // A half upwards, from either side: 1.5 and 2.5 of 65536, and a hair less.
        EXPECT_THAT(edges(5, 2, 1 + 1.5 / 65536, false), ElementsAre(0, 65538, 131075));
        EXPECT_THAT(edges(5, 1, 1 + 1.4999 / 65536, false), ElementsAre(0, 65537));
        EXPECT_THAT(edges(1, 1, 1e300, false), ElementsAre(0, std::int64_t{1} << 58));
    }

    TEST(Reduction, LargestAreaOf64BitsIsExact)
    {
        constexpr std::uint64_t Area = RasterFeed::LargestArea<std::uint64_t>;
        EXPECT_EQ(RasterFeed::MeanPixel<std::uint64_t>(Area * 255, Area), 255);
        EXPECT_EQ(RasterFeed::MeanPixel<std::uint64_t>(Area * 254 + (Area - 1) / 2, Area), 254);
        EXPECT_EQ(RasterFeed::MeanPixel<std::uint64_t>(Area * 254 + (Area + 1) / 2, Area), 255);
    }
}
