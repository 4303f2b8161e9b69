// Every form of TIFF that a separation may have, against pixels computed from the rule that made the file.

#include "tests/layers/rasterfeed/Delivery.h"
#include "tests/layers/rasterfeed/PlainView.h"
#include "tests/support/TiffEditor.h"
#include "tests/support/TiffMaker.h"

#include <gtest/gtest.h>

namespace RasterFeedTest
{
    using TestSupport::MakeTiff;
    using TestSupport::MixedSamples;
    using TestSupport::SampleRule;
    using TestSupport::TiffEditor;
    using TestSupport::TiffForm;
    namespace
    {
        using Values = std::initializer_list<std::uint16_t>;

        std::vector<std::string> ExpectedLines(const TiffForm& form, const SampleRule& rule)
        {
            return Upright(StoredImage(form, rule), form.orientation).lines;
        }

        std::string Describe(const TiffForm& form)
        {
            return "bits " + std::to_string(form.bits) + ", photometric " + std::to_string(form.photometric) +
                   ", compression " + std::to_string(form.compression) + ", predictor " +
                   std::to_string(form.predictor) + ", fill order " + std::to_string(form.fillOrder) +
                   ", orientation " + std::to_string(form.orientation) + ", strip " +
                   std::to_string(form.rowsPerStrip) + ", tile " + std::to_string(form.tileWidth) + " x " +
                   std::to_string(form.tileLength) + (form.bigEndian ? ", big-endian" : "") +
                   (form.bigTiff ? ", BigTIFF" : "");
        }

        /// The file is read to its end, and these are its lines.
        void ExpectLines(const std::string& tiff, const std::vector<std::string>& lines)
        {
            const Delivery delivery = Deliver(tiff);
            EXPECT_TRUE(delivery.IsComplete());
            EXPECT_EQ(delivery.lines, lines);
        }

        /// The form is read exactly, in all of the layouts that decide how rows are found.
        void ExpectExactInAllLayouts(TiffForm form)
        {
            const SampleRule rule = MixedSamples(form.bits);
            struct Layout
            {
                std::uint32_t height, rowsPerStrip, tileWidth, tileLength;
            };
            // One row to a strip; several; all in one; tiles within the image; one tile larger than the image.
            for (const Layout& layout :
                 {Layout{23, 1, 0, 0}, {23, 8, 0, 0}, {23, 23, 0, 0}, {23, 0, 16, 16}, {9, 0, 64, 32}})
            {
                form.height = layout.height;
                form.rowsPerStrip = layout.rowsPerStrip;
                form.tileWidth = layout.tileWidth;
                form.tileLength = layout.tileLength;
                SCOPED_TRACE(Describe(form));
                ExpectLines(MakeTiff(form, rule), ExpectedLines(form, rule));
            }
        }
    }

    TEST(AcceptedForms, EveryDepthPolarityFillOrderAndOrientation)
    {
        for (const std::uint16_t bits : Values{1, 2, 4, 8, 16})
        {
            for (const std::uint16_t photometric :
                 Values{PHOTOMETRIC_MINISBLACK, PHOTOMETRIC_MINISWHITE, PHOTOMETRIC_SEPARATED})
            {
                for (const std::uint16_t fillOrder : Values{FILLORDER_MSB2LSB, FILLORDER_LSB2MSB})
                {
                    for (const std::uint16_t orientation : Values{1, 2, 3, 4, 5, 6, 7, 8})
                    {
                        TiffForm form;
                        form.bits = bits;
                        form.photometric = photometric;
                        form.fillOrder = fillOrder;
                        form.orientation = orientation;
                        ExpectExactInAllLayouts(form);
                    }
                }
            }
        }
    }

    TEST(AcceptedForms, EveryCompressionOfEveryDepthItServes)
    {
        struct Coding
        {
            std::uint16_t compression;
            std::vector<std::uint16_t> depths;
            bool hasPredictor;
        };
        const Coding codings[] = {
            {COMPRESSION_NONE, {1, 2, 4, 8, 16}, false},   {COMPRESSION_PACKBITS, {1, 2, 4, 8, 16}, false},
            {COMPRESSION_LZW, {1, 2, 4, 8, 16}, true},     {COMPRESSION_ADOBE_DEFLATE, {1, 2, 4, 8, 16}, true},
            {COMPRESSION_DEFLATE, {1, 2, 4, 8, 16}, true}, {COMPRESSION_ZSTD, {1, 8, 16}, true},
            {COMPRESSION_LZMA, {1, 8, 16}, true},          {COMPRESSION_CCITTRLE, {1}, false},
            {COMPRESSION_CCITTFAX4, {1}, false},
        };
        for (const Coding& coding : codings)
        {
            for (const std::uint16_t bits : coding.depths)
            {
                for (const std::uint16_t predictor : Values{0, PREDICTOR_NONE, PREDICTOR_HORIZONTAL})
                {
                    if (predictor != 0 && (!coding.hasPredictor || bits < 8))
                    {
                        continue;
                    }
                    for (const bool bigEndian : {false, true})
                    {
                        TiffForm form;
                        form.bits = bits;
                        form.compression = coding.compression;
                        form.predictor = predictor;
                        form.bigEndian = bigEndian;
                        form.bigTiff = bigEndian;
                        ExpectExactInAllLayouts(form);
                        form.orientation = ORIENTATION_BOTLEFT;
                        form.fillOrder = FILLORDER_LSB2MSB;
                        form.planar = PLANARCONFIG_SEPARATE; // of one sample makes no difference
                        ExpectExactInAllLayouts(form);
                    }
                }
            }
        }
    }

    TEST(AcceptedForms, Group3InBothDimensionsWithAndWithoutFillBits)
    {
        for (const std::uint32_t options :
             {0u, GROUP3OPT_2DENCODING + 0u, GROUP3OPT_FILLBITS + 0u, GROUP3OPT_2DENCODING + GROUP3OPT_FILLBITS + 0u})
        {
            TiffForm form;
            form.bits = 1;
            form.compression = COMPRESSION_CCITTFAX3;
            form.photometric = PHOTOMETRIC_MINISWHITE;
            form.faxOptions = options;
            ExpectExactInAllLayouts(form);
        }
    }

    TEST(AcceptedForms, LastRowsOfCcittRleWhateverTheirCodes)
    {
        // Two colours in every row, so that its codes end anywhere in their last byte, and the next row's in the data's last two.
        for (std::uint32_t width = 2; width < 20; ++width)
        {
            for (std::uint32_t white = 0; white < width; ++white)
            {
                TiffForm form;
                form.width = width;
                form.height = 5;
                form.rowsPerStrip = 3;
                form.bits = 1;
                form.photometric = PHOTOMETRIC_MINISWHITE;
                form.compression = COMPRESSION_CCITTRLE;
                const SampleRule rule = [&](std::uint32_t x, std::uint32_t) { return x < white ? 0u : 1u; };
                EXPECT_EQ(Deliver(MakeTiff(form, rule)).lines, ExpectedLines(form, rule)) << width << ", " << white;
            }
        }
    }

    TEST(AcceptedForms, JpegOfFlatBlocksIsExact)
    {
        // Blocks of one value have no frequencies to lose: at quality 100 the round trip is exact.
        TiffForm form;
        form.width = 40;
        form.height = 24;
        form.compression = COMPRESSION_JPEG;
        const SampleRule rule = [](std::uint32_t x, std::uint32_t y) { return (x / 8 * 37 + y / 8 * 90) % 256; };
        for (const std::uint32_t rowsPerStrip : {8u, 24u})
        {
            for (const std::uint16_t photometric : Values{PHOTOMETRIC_MINISBLACK, PHOTOMETRIC_MINISWHITE})
            {
                form.rowsPerStrip = rowsPerStrip;
                form.photometric = photometric;
                ExpectLines(MakeTiff(form, rule), ExpectedLines(form, rule));
            }
        }
    }

    TEST(AcceptedForms, StripsTooLargeToHoldAreReadLineByLine)
    {
        // 1.5 MiB of samples in one strip, beyond what is decoded as a whole.
        for (const std::uint16_t compression : Values{
                 COMPRESSION_NONE, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE, COMPRESSION_PACKBITS, COMPRESSION_ZSTD,
                 COMPRESSION_CCITTFAX4})
        {
            TiffForm form;
            form.bits = compression == COMPRESSION_CCITTFAX4 ? 1 : 8;
            form.width = 8 / form.bits * 3001u;
            form.height = 520;
            form.rowsPerStrip = 520;
            form.compression = compression;
            const SampleRule rule = MixedSamples(form.bits);
            SCOPED_TRACE(Describe(form));
            ExpectLines(MakeTiff(form, rule), ExpectedLines(form, rule));
        }
    }

    TEST(AcceptedForms, OldStyleLzwIsRead)
    {
        // Before TIFF 6 codes were packed from the lowest bit up. By hand, 9-bit codes: clear (256), 10, 20, 30, 40, end (257).
        const unsigned codes[] = {256, 10, 20, 30, 40, 257};
        std::string packed((std::size(codes) * 9 + 7) / 8, '\0');
        for (std::size_t i = 0; i < std::size(codes) * 9; ++i)
        {
            if ((codes[i / 9] >> i % 9 & 1) != 0)
            {
                packed[i / 8] = static_cast<char>(packed[i / 8] | 1 << i % 8);
            }
        }
        TiffForm form;
        form.width = 2;
        form.height = 2;
        form.rowsPerStrip = 2;
        std::string bytes = MakeTiff(form, MixedSamples(8));
        const std::uint64_t place = bytes.size();
        TiffEditor editor(bytes + packed);
        editor.Set(TIFFTAG_COMPRESSION, TIFF_SHORT, {COMPRESSION_LZW});
        editor.Set(TIFFTAG_STRIPOFFSETS, TIFF_LONG, {place});
        editor.Set(TIFFTAG_STRIPBYTECOUNTS, TIFF_LONG, {packed.size()});
        ExpectLines(editor.Bytes(), (std::vector<std::string>{{10, 20}, {30, 40}}));
    }

    TEST(AcceptedForms, StripMayHoldMoreRowsThanTheImage)
    {
        TiffForm form;
        form.compression = COMPRESSION_ADOBE_DEFLATE;
        form.rowsPerStrip = form.height;
        const SampleRule rule = MixedSamples(8);
        std::vector<std::string> lines = ExpectedLines(form, rule);
        TiffEditor editor(MakeTiff(form, rule));
        editor.Set(TIFFTAG_IMAGELENGTH, TIFF_LONG, {form.height - 2});
        lines.resize(form.height - 2);
        ExpectLines(editor.Bytes(), lines);
    }

    TEST(AcceptedForms, FirstImageOfFullResolutionIsTaken)
    {
        TiffForm page;
        page.width = 7;
        TiffForm other;
        other.width = 9;
        const SampleRule rule = MixedSamples(8);
        EXPECT_EQ(Deliver(MakeTiff(page, other, rule)).header.lineLength, 7u);
        other.subfileType = FILETYPE_REDUCEDIMAGE;
        EXPECT_EQ(Deliver(MakeTiff(page, other, rule)).header.lineLength, 7u);
        EXPECT_EQ(Deliver(MakeTiff(other, page, rule)).header.lineLength, 7u);
        TiffEditor old(MakeTiff(other, page, rule));
        old.Remove(TIFFTAG_SUBFILETYPE);
        EXPECT_EQ(Deliver(old.Bytes()).header.lineLength, 9u);
        old.Set(TIFFTAG_OSUBFILETYPE, TIFF_SHORT, {OFILETYPE_REDUCEDIMAGE});
        EXPECT_EQ(Deliver(old.Bytes()).header.lineLength, 7u);
        other.subfileType = FILETYPE_MASK;
        const Delivery afterMask = Deliver(MakeTiff(other, page, rule));
        EXPECT_EQ(afterMask.header.lineLength, 7u);
        EXPECT_EQ(afterMask.lines, ExpectedLines(page, rule));
    }

    TEST(AcceptedForms, WhatWritersLeaveOutIsTakenAsTheFormatHasIt)
    {
        // No RowsPerStrip: one strip. No byte counts, or zero: the length of an uncompressed strip is known. No
        // BitsPerSample or SamplesPerPixel: one bit, one sample. An unknown tag, of a type of its own, is passed over.
        TiffForm form;
        form.bits = 1;
        form.rowsPerStrip = form.height;
        const SampleRule rule = MixedSamples(1);
        for (const std::uint16_t tag :
             Values{TIFFTAG_ROWSPERSTRIP, TIFFTAG_STRIPBYTECOUNTS, TIFFTAG_BITSPERSAMPLE, TIFFTAG_SAMPLESPERPIXEL})
        {
            TiffEditor editor(MakeTiff(form, rule));
            editor.Remove(tag);
            editor.SetRaw(60000, 77, 5, 0xffffffff);
            SCOPED_TRACE(tag);
            ExpectLines(editor.Bytes(), ExpectedLines(form, rule));
        }
    }
}
