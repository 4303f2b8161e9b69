// What cannot be a separation, with the reason that a host can show: a sound file with one thing changed each.

#include "tests/layers/rasterfeed/Delivery.h"
#include "tests/support/Folder.h"
#include "tests/support/SystemFaults.h"
#include "tests/support/TiffEditor.h"
#include "tests/support/TiffMaker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <fstream>

namespace RasterFeedTest
{
    using testing::HasSubstr;
    using testing::StartsWith;
    using TestSupport::MakeTiff;
    using TestSupport::MixedSamples;
    using TestSupport::TiffEditor;
    using TestSupport::TiffForm;

    namespace
    {
        const char* const Photometrics = "; MinIsBlack, MinIsWhite and Separated with one ink are accepted";

        std::string Made(const TiffForm& form)
        {
            return MakeTiff(form, MixedSamples(form.bits));
        }

        /// A sound 8-bit file, in which `edit` changes something.
        template <class Edit>
        std::string Edited(Edit edit, const TiffForm& form = {})
        {
            TiffEditor editor(Made(form));
            edit(editor);
            return editor.Bytes();
        }

        std::string WithValue(std::uint16_t tag, std::uint64_t value, const TiffForm& form = {})
        {
            return Edited([&](TiffEditor& editor) { editor.Set(tag, TIFF_LONG, {value}); }, form);
        }

        /// The file is refused before its first line, with this reason.
        void ExpectRefused(const std::string& tiff, const testing::Matcher<std::string>& reason)
        {
            const Delivery delivery = Deliver(tiff);
            EXPECT_TRUE(delivery.end == Delivery::End::InitFailed || delivery.end == Delivery::End::HeaderFailed);
            EXPECT_EQ(MemoryFile::Opened(), MemoryFile::Closed());
            EXPECT_THAT(ReasonFor(tiff, RasterFeedDepth::Header), reason);
        }
    }

    TEST(Refusals, FormsThatNoSeparationHas)
    {
        TiffForm rgb;
        rgb.samples = 3;
        rgb.photometric = PHOTOMETRIC_RGB;
        ExpectRefused(Made(rgb), "3 samples per pixel (RGB); a separation has one");
        TiffForm cmyk = rgb;
        cmyk.samples = 4;
        cmyk.photometric = PHOTOMETRIC_SEPARATED;
        cmyk.planar = PLANARCONFIG_SEPARATE;
        ExpectRefused(
            Made(cmyk),
            "4 samples per pixel (Separated); a separation has one: choose it by \"page\": 1 and \"channel\": 1 to 4");
        TiffForm greyAlpha = rgb;
        greyAlpha.samples = 2;
        greyAlpha.photometric = PHOTOMETRIC_MINISBLACK;
        ExpectRefused(Made(greyAlpha), "2 samples per pixel (MinIsBlack); a separation has one");

        ExpectRefused(
            WithValue(TIFFTAG_PHOTOMETRIC, 4), std::string("photometric 4 (transparency mask)") + Photometrics);
        ExpectRefused(WithValue(TIFFTAG_PHOTOMETRIC, 8), std::string("photometric 8 (CIE L*a*b*)") + Photometrics);
        ExpectRefused(WithValue(TIFFTAG_PHOTOMETRIC, 777), std::string("photometric 777") + Photometrics);
        // Without a colour map libtiff would take palette indices for grey.
        ExpectRefused(WithValue(TIFFTAG_PHOTOMETRIC, 3), std::string("photometric 3 (palette)") + Photometrics);
        ExpectRefused(
            Edited([](TiffEditor& editor) { editor.Remove(TIFFTAG_PHOTOMETRIC); }),
            std::string("no photometric tag, so that its polarity would be a guess") + Photometrics);

        TiffForm wide;
        wide.bits = 16;
        wide.sampleFormat = SAMPLEFORMAT_INT;
        ExpectRefused(Made(wide), "sample format 2 (signed integers); unsigned integers are accepted");
        wide.sampleFormat = SAMPLEFORMAT_IEEEFP;
        ExpectRefused(Made(wide), "sample format 3 (floating point); unsigned integers are accepted");
        for (const std::uint64_t bits : {3u, 12u, 24u, 32u})
        {
            ExpectRefused(
                WithValue(TIFFTAG_BITSPERSAMPLE, bits),
                std::to_string(bits) + " bits per sample; 1, 2, 4, 8 and 16 are accepted");
        }

        ExpectRefused(WithValue(TIFFTAG_COMPRESSION, 6), StartsWith("compression 6 (old-style JPEG); none, "));
        ExpectRefused(WithValue(TIFFTAG_COMPRESSION, 34661), StartsWith("compression 34661 (JBIG); none, "));
        ExpectRefused(WithValue(TIFFTAG_COMPRESSION, 4), "CCITT compression of 8 bits per sample; 1 is accepted");
        TiffForm predicted;
        predicted.bits = 4;
        predicted.compression = COMPRESSION_LZW;
        ExpectRefused(
            WithValue(TIFFTAG_PREDICTOR, 2, predicted),
            "predictor 2 of 4 bits per sample; 1, and 2 of 8 or 16 bits, are accepted");
        ExpectRefused(WithValue(TIFFTAG_IMAGEDEPTH, 2), "2 planes in depth; a separation has one");
    }

    TEST(Refusals, SizesThatOverflow)
    {
        ExpectRefused(
            WithValue(TIFFTAG_IMAGEWIDTH, 0x80000000), HasSubstr("; 1 to 2147483647 in each direction are accepted"));
        ExpectRefused(
            WithValue(TIFFTAG_IMAGEWIDTH, 0x40000001),
            "1073741825 x 23 pixels in rows of more than 1 GiB; rows of up to 1 GiB are accepted");
        ExpectRefused(WithValue(TIFFTAG_IMAGEWIDTH, 0), StartsWith("damaged TIFF structure"));
        ExpectRefused(WithValue(TIFFTAG_IMAGELENGTH, 0), StartsWith("damaged TIFF structure"));
        // Fewer strips are listed than the image has.
        ExpectRefused(WithValue(TIFFTAG_IMAGELENGTH, 0x7fffffff), StartsWith("damaged TIFF structure"));
        TiffForm whole;
        whole.height = 20;
        ExpectRefused(WithValue(TIFFTAG_IMAGELENGTH, 21, whole), StartsWith("strip 5 of 5 has no data; "));
        // 1-bit rows expand eightfold: the delivered line counts too.
        TiffForm bilevel;
        bilevel.bits = 1;
        ExpectRefused(WithValue(TIFFTAG_IMAGEWIDTH, 0x40000001, bilevel), HasSubstr("in rows of more than 1 GiB"));
        TiffForm tiled;
        tiled.bits = 1;
        tiled.tileWidth = 16;
        tiled.tileLength = 16;
        ExpectRefused(
            WithValue(TIFFTAG_TILEWIDTH, 12, tiled), HasSubstr("; widths that are multiples of 16 are accepted"));
    }

    TEST(Refusals, WhatIsNoTiffOrNoImage)
    {
        const std::string sound = Made({});
        ExpectRefused("", "not a TIFF file; TIFF and BigTIFF are accepted");
        ExpectRefused("II*", "not a TIFF file; TIFF and BigTIFF are accepted");
        ExpectRefused("%!PS-Adobe-3.0", "not a TIFF file; TIFF and BigTIFF are accepted");
        ExpectRefused(std::string("II*\0\0\0\0\0", 8), "no image; a TIFF with one is needed");
        ExpectRefused(
            std::string("MM\0*\0\0\0\x09", 8),
            "a directory at byte 9, beyond the end of the file of 8 bytes; a whole TIFF is needed");
        ExpectRefused(sound.substr(0, sound.size() - 40), "the file ends inside its directory; a whole TIFF is needed");
        ExpectRefused(
            Edited([](TiffEditor& editor) { editor.Remove(TIFFTAG_STRIPOFFSETS); }),
            StartsWith("damaged TIFF structure ("));

        TiffForm thumbnail;
        thumbnail.subfileType = FILETYPE_REDUCEDIMAGE;
        ExpectRefused(
            Made(thumbnail), "only reduced-resolution images and masks; one image of full resolution is needed");
        ExpectRefused(
            Edited([](TiffEditor& editor) { editor.SetNext(editor.DirectoryOffset()); }, thumbnail),
            StartsWith("only reduced-resolution images and masks"));
        EXPECT_TRUE(Deliver(Edited([](TiffEditor& editor) { editor.SetNext(editor.DirectoryOffset()); })).IsComplete());
    }

    TEST(Refusals, DataThatIsNotAllThere)
    {
        TiffForm form;
        form.height = 20;
        const auto cut = [&](std::uint16_t tag, const std::vector<std::uint64_t>& values)
        { return Edited([&](TiffEditor& editor) { editor.Set(tag, TIFF_LONG, values); }, form); };
        ExpectRefused(
            cut(TIFFTAG_STRIPOFFSETS, {8, 193, 378, 0xfffffff0}),
            HasSubstr("strip 4 of 4 of 185 bytes at byte 4294967280 reaches beyond the end of the file of"));
        ExpectRefused(cut(TIFFTAG_STRIPOFFSETS, {8, 193, 378, 0}), StartsWith("strip 4 of 4 has no data; "));
        ExpectRefused(
            cut(TIFFTAG_STRIPBYTECOUNTS, {185, 185, 184, 185}),
            StartsWith("strip 3 of 4 has 184 bytes of 185 bytes; "));

        // Every compressed form with the last of its data gone: the line is named.
        for (const std::uint16_t compression : std::vector<std::uint16_t>{
                 COMPRESSION_PACKBITS, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE, COMPRESSION_ZSTD, COMPRESSION_LZMA,
                 COMPRESSION_CCITTRLE, COMPRESSION_CCITTFAX3, COMPRESSION_CCITTFAX4, COMPRESSION_JPEG})
        {
            form.compression = compression;
            form.bits = compression >= COMPRESSION_CCITTRLE && compression <= COMPRESSION_CCITTFAX4 ? 1 : 8;
            form.rowsPerStrip = 8;
            TiffEditor editor(Made(form));
            const std::uint64_t third = editor.Get(TIFFTAG_STRIPBYTECOUNTS, 2);
            editor.Set(
                TIFFTAG_STRIPBYTECOUNTS, TIFF_LONG,
                {editor.Get(TIFFTAG_STRIPBYTECOUNTS, 0), editor.Get(TIFFTAG_STRIPBYTECOUNTS, 1), third * 2 / 3});
            const Delivery delivery = Deliver(editor.Bytes());
            EXPECT_EQ(delivery.end, Delivery::End::LineFailed) << "compression " << compression;
            EXPECT_GE(delivery.lines.size(), 16u) << "compression " << compression;
            EXPECT_THAT(
                ReasonFor(editor.Bytes()), StartsWith(
                                               "line " + std::to_string(delivery.lines.size() + 1) +
                                               " of 20: image data that ends early or cannot be decoded ("))
                << "compression " << compression;
            EXPECT_EQ(ReasonFor(editor.Bytes(), RasterFeedDepth::Header), "") << "compression " << compression;
        }
    }

    TEST(Refusals, StatedLengthsThatAreTooShortAreNotWorkedOutInstead)
    {
        // libtiff disbelieves the lengths of an image in one strip, and those that differ from strip to strip.
        TiffForm form;
        form.height = 20;
        for (const std::uint32_t rows : {20u, 5u})
        {
            form.rowsPerStrip = rows;
            TiffEditor editor(Made(form));
            std::vector<std::uint64_t> lengths(20 / rows, form.width * rows);
            lengths[0] = 100;
            editor.Set(TIFFTAG_STRIPBYTECOUNTS, TIFF_LONG, lengths);
            ExpectRefused(editor.Bytes() + std::string(1000, 'x'), HasSubstr(" has 100 bytes of "));
            lengths[0] = 0xffffffff;
            editor.Set(TIFFTAG_STRIPBYTECOUNTS, TIFF_LONG, lengths);
            ExpectRefused(
                editor.Bytes(), HasSubstr("strip 1 of " + std::to_string(lengths.size()) + " of 4294967295 bytes"));
        }
    }

    /// Delivers the file with its first strip or tile cut at its end and damaged in every byte, and asserts that what comes is
    /// the same lines or a refusal.
    void ExpectNoOtherPixels(const std::string& sound, std::uint16_t offsetTag, std::uint16_t lengthTag)
    {
        const Delivery whole = Deliver(sound);
        ASSERT_TRUE(whole.IsComplete());
        const TiffEditor editor(sound);
        const std::size_t begin = editor.Get(offsetTag);
        const std::size_t length = editor.Get(lengthTag);
        for (std::size_t i = 0; i < length; i += 1 + length / 2000)
        {
            std::string damaged = sound;
            damaged[begin + i] = static_cast<char>(damaged[begin + i] ^ 1 << i % 8);
            const Delivery delivery = Deliver(damaged);
            ASSERT_TRUE(!delivery.IsComplete() || delivery.lines == whole.lines)
                << "damaged at " << i << " of " << length;
            std::string cut = sound;
            cut.replace(begin + length - i % 32, i % 32, i % 32, '\0');
            const Delivery delivered = Deliver(cut);
            ASSERT_TRUE(!delivered.IsComplete() || delivered.lines == whole.lines) << i % 32 << " bytes cut";
        }
    }

    TEST(Refusals, DamagedDeflateIsNotDeliveredAsOtherPixels)
    {
        TiffForm form;
        form.compression = COMPRESSION_ADOBE_DEFLATE;
        form.width = 300;
        form.rowsPerStrip = form.height;
        ExpectNoOtherPixels(Made(form), TIFFTAG_STRIPOFFSETS, TIFFTAG_STRIPBYTECOUNTS);
        form.predictor = PREDICTOR_HORIZONTAL;
        form.fillOrder = FILLORDER_LSB2MSB;
        ExpectNoOtherPixels(Made(form), TIFFTAG_STRIPOFFSETS, TIFFTAG_STRIPBYTECOUNTS);
        form.bits = 16;
        form.bigEndian = true;
        ExpectNoOtherPixels(Made(form), TIFFTAG_STRIPOFFSETS, TIFFTAG_STRIPBYTECOUNTS);
        form.predictor = 0;
        form.tileWidth = 304;
        form.tileLength = 32;
        ExpectNoOtherPixels(Made(form), TIFFTAG_TILEOFFSETS, TIFFTAG_TILEBYTECOUNTS);
    }

    TEST(Refusals, DamagedDeflateIsFoundLineByLineToo)
    {
        // A strip that is too large to be decoded at once.
        TiffForm form;
        form.compression = COMPRESSION_ADOBE_DEFLATE;
        form.width = 4000;
        form.height = 9000;
        form.rowsPerStrip = form.height;
        const std::string sound = MakeTiff(form, [](std::uint32_t x, std::uint32_t y) { return (x * y >> 9) & 255; });
        EXPECT_TRUE(Deliver(sound).IsComplete());
        const TiffEditor editor(sound);
        std::string damaged = sound;
        damaged[editor.Get(TIFFTAG_STRIPOFFSETS) + editor.Get(TIFFTAG_STRIPBYTECOUNTS) - 1] ^= 1;
        EXPECT_EQ(Deliver(damaged).end, Delivery::End::LineFailed);
    }

    TEST(Refusals, MissingGroupFourLinesAreNotDeliveredAsWhite)
    {
        // libtiff reports success and gives white lines where it meets the end mark early, or zeros: what a copy leaves that
        // stopped half-way into a file of its full size.
        TiffForm form;
        form.bits = 1;
        form.compression = COMPRESSION_CCITTFAX4;
        form.height = 100;
        form.rowsPerStrip = 100;
        const std::string sound = Made(form);
        for (const std::uint32_t claimed : {100u, 101u, 102u, 109u})
        {
            TiffEditor editor(sound);
            editor.Set(TIFFTAG_IMAGELENGTH, TIFF_LONG, {claimed});
            editor.Set(TIFFTAG_ROWSPERSTRIP, TIFF_LONG, {claimed});
            EXPECT_EQ(Deliver(editor.Bytes()).IsComplete(), claimed == 100) << claimed;
        }
        const TiffEditor editor(sound);
        const std::size_t end = editor.Get(TIFFTAG_STRIPOFFSETS) + editor.Get(TIFFTAG_STRIPBYTECOUNTS);
        for (std::size_t zeros = 8; zeros < 400; ++zeros)
        {
            std::string zeroed = sound;
            zeroed.replace(end - zeros, zeros, zeros, '\0');
            ASSERT_EQ(Deliver(zeroed).end, Delivery::End::LineFailed) << zeros << " zeros";
        }
    }

    TEST(Refusals, NothingIsPrinted)
    {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const std::string sound = Made({});
        for (std::size_t i = 0; i < sound.size(); ++i)
        {
            std::string damaged = sound;
            damaged[i] = static_cast<char>(damaged[i] ^ 0xff);
            Deliver(damaged);
        }
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    }

    TEST(Refusals, FilesThatCannotBeRead)
    {
        const TestSupport::Folder folder;
        const std::string& base = folder.Path();
        const int openBefore = TestSupport::OpenDescriptors();
        const char* const needed = "; a readable TIFF file of up to 4294967295 bytes is needed";
        const auto reason = [](const std::string& name)
        { return RasterFeedProbe(name, RasterFeedDepth::Lines).reason; };

        EXPECT_EQ(reason(base), base + ": not a regular file" + needed);
        EXPECT_EQ(reason(base + "/none.tif"), base + "/none.tif: No such file or directory" + needed);

        // The default extension, and a name that would break the line.
        std::ofstream(base + "/scan\n.tif") << Made({});
        EXPECT_TRUE(RasterFeedProbe(base + "/scan\n", RasterFeedDepth::Lines).accepted);
        std::ofstream(base + "/scan\n.tif") << "no TIFF";
        EXPECT_EQ(reason(base + "/scan\n"), base + "/scan?.tif: not a TIFF file; TIFF and BigTIFF are accepted");
        EXPECT_EQ(TestSupport::OpenDescriptors(), openBefore);
    }

    TEST(Refusals, ProbeNamesAFailingReadAndLeavesNothingOpen)
    {
        const TestSupport::Folder folder;
        const std::string name = folder.Write("sound.tif", Made({}));
        const int openBefore = TestSupport::OpenDescriptors();
        {
            const TestSupport::SystemFault fault("pread", EIO);
            EXPECT_EQ(
                RasterFeedProbe(name, RasterFeedDepth::Lines).reason,
                name + ": Input/output error; a readable TIFF file of up to 4294967295 bytes is needed");
        }
        EXPECT_EQ(TestSupport::OpenDescriptors(), openBefore);
        const TestSupport::SystemFault ignored("close", EIO); // of a file that is done with
        EXPECT_TRUE(RasterFeedProbe(name, RasterFeedDepth::Lines).accepted);
    }
}
