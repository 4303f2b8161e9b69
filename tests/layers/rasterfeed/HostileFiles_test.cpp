// Files made to exhaust memory or time: each is refused before it costs anything, or costs no more than is promised.

#include "tests/layers/rasterfeed/Delivery.h"
#include "tests/support/TiffEditor.h"
#include "tests/support/TiffMaker.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

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
        /// The most memory that this process has ever had, in MiB.
        long PeakMemory()
        {
            rusage used = {};
            ::getrusage(RUSAGE_SELF, &used);
            return used.ru_maxrss / 1024;
        }

        /// How much `work` adds to the peak, measured in a process of its own; in MiB.
        int MemoryOf(const std::function<void()>& work)
        {
            const pid_t child = ::fork();
            if (child == 0)
            {
                const long before = PeakMemory();
                work();
                ::_exit(static_cast<int>(std::min(255l, (PeakMemory() - before) / 2)));
            }
            int status = 0;
            ::waitpid(child, &status, 0);
            return WIFEXITED(status) ? WEXITSTATUS(status) * 2 : -1;
        }

        /// The header, and a few lines from the top.
        void ReadSome(const std::string& tiff, const RasterFeedSelection& view = {})
        {
            MemoryFile::Reset(tiff);
            const RasterFeedOpenRecord record = MemoryFile::Record();
            const RasterFeedHandle reader = RasterFeedInit(&record);
            RasterFeedImageHeader header;
            if (reader != nullptr && RasterFeedSelect(reader, &view) == 0 && RasterFeedHeader(reader, &header) == 0)
            {
                std::vector<unsigned char> line(header.lineLength);
                unsigned char* const list[] = {line.data()};
                for (int i = 0; i < 10 && RasterFeedLine(reader, list, 1) == 0; ++i)
                {
                }
            }
            if (reader != nullptr)
            {
                RasterFeedEnd(reader, nullptr);
            }
        }

        std::string Flat(const TiffForm& form)
        {
            return MakeTiff(form, [](std::uint32_t, std::uint32_t) { return 0; });
        }

        /// An image in one chunk that claims to be larger than it is.
        std::string Claiming(TiffForm form, std::uint32_t width, std::uint32_t height)
        {
            form.rowsPerStrip = form.height;
            TiffEditor editor(Flat(form));
            editor.Set(TIFFTAG_IMAGEWIDTH, TIFF_LONG, {width});
            editor.Set(TIFFTAG_IMAGELENGTH, TIFF_LONG, {height});
            editor.Set(TIFFTAG_ROWSPERSTRIP, TIFF_LONG, {height});
            return editor.Bytes();
        }
    }

    TEST(HostileFiles, ClaimsOfMemoryAreRefusedBeforeItIsAllocated)
    {
        TiffForm form;
        form.compression = COMPRESSION_LZW;
        TiffForm bottomUp = form;
        bottomUp.orientation = ORIENTATION_BOTLEFT;
        TiffForm zstd = bottomUp;
        zstd.compression = COMPRESSION_ZSTD;
        TiffForm lzma = form;
        lzma.compression = COMPRESSION_LZMA;
        TiffForm groupFour = form;
        groupFour.bits = 1;
        groupFour.compression = COMPRESSION_CCITTFAX4;
        TiffForm tiled = form;
        tiled.tileWidth = 16;
        tiled.tileLength = 16;

        TiffEditor fourGigabytes(Flat(form));
        fourGigabytes.Set(TIFFTAG_STRIPBYTECOUNTS, TIFF_LONG, {20, 0xffffff00, 20, 20, 20});
        TiffEditor longLists(Flat(form));
        longLists.SetRaw(TIFFTAG_STRIPBYTECOUNTS, TIFF_LONG, 0x3fffffff, 8);
        TiffEditor longProfile(Flat(form));
        longProfile.SetRaw(TIFFTAG_ICCPROFILE, TIFF_UNDEFINED, 0xfffffff0, 8);
        TiffEditor manyTiles(Flat(tiled));
        manyTiles.Set(TIFFTAG_IMAGELENGTH, TIFF_LONG, {0x7fffffff});
        TiffEditor wideTile(Flat(tiled));
        wideTile.Set(TIFFTAG_TILEWIDTH, TIFF_LONG, {0x40000000});
        wideTile.Set(TIFFTAG_TILELENGTH, TIFF_LONG, {0x40000000});

        const struct
        {
            const char* name;
            std::string tiff;
            testing::Matcher<std::string> reason;
        } cases[] = {
            {"a strip of 4 GB", fourGigabytes.Bytes(), HasSubstr("reaches beyond the end of the file")},
            {"a list of 4 GB", longLists.Bytes(), HasSubstr("reaches beyond the end of the file")},
            {"a profile of 4 GB is passed over", longProfile.Bytes(), ""},
            {"a row of tiles of 1 TB", manyTiles.Bytes(), StartsWith("damaged TIFF structure")},
            {"a tile of 1 EB", wideTile.Bytes(), HasSubstr("tiles")},
            {"a strip of 4 GB from its end", Claiming(bottomUp, 65536, 65536), StartsWith("strips that take")},
            {"a strip of 200 MB beside a ZSTD window", Claiming(zstd, 10000, 20000), StartsWith("strips that take")},
            {"an LZMA dictionary of 300 MB", Claiming(lzma, 10000, 30000), StartsWith("strips that take")},
            {"run lengths of 1 GB", Claiming(groupFour, 0x4000000, 100), HasSubstr("; rows of up to 1000000 pixels")},
        };
        for (const auto& hostile : cases)
        {
            EXPECT_THAT(ReasonFor(hostile.tiff, RasterFeedDepth::Header), hostile.reason) << hostile.name;
            EXPECT_LT(MemoryOf([&] { ReadSome(hostile.tiff); }), 32) << hostile.name;
        }
    }

    TEST(HostileFiles, MetadataIsBounded)
    {
        // Eight values of 8 MiB, all in the same place.
        TiffEditor editor(Flat({}) + std::string(8 << 20, 'x'));
        for (std::uint16_t tag = 50000; tag < 50008; ++tag)
        {
            editor.SetRaw(tag, TIFF_BYTE, 8 << 20, 8);
        }
        const std::string tiff = editor.Bytes();
        EXPECT_EQ(ReasonFor(tiff), "metadata of 67108864 bytes; up to 32 MiB are accepted");
        EXPECT_LT(MemoryOf([&] { ReadSome(tiff); }), 64);
    }

    TEST(HostileFiles, WhatIsAcceptedStaysWithinItsMemory)
    {
        // Just below the bound: a strip of 180 MB that has to be held since it is read from its end.
        TiffForm form;
        form.width = 15000;
        form.height = 12000;
        form.rowsPerStrip = form.height;
        form.compression = COMPRESSION_ADOBE_DEFLATE;
        form.orientation = ORIENTATION_BOTLEFT;
        const std::string tiff = Flat(form);
        EXPECT_EQ(ReasonFor(tiff, RasterFeedDepth::Header), "");
        const int memory = MemoryOf([&] { ReadSome(tiff); });
        EXPECT_GT(memory, 150);
        EXPECT_LT(memory, 256);
    }

    TEST(HostileFiles, ReductionOfAPlateTakesItsStripAndARowOfSums)
    {
        // As wide as the widest plates, in one strip.
        TiffForm form;
        form.width = 67200;
        form.height = 600;
        form.bits = 1;
        form.rowsPerStrip = form.height;
        form.compression = COMPRESSION_CCITTFAX4;
        form.resolution = 2400;
        const std::string tiff = MakeTiff(form, MixedSamples(1));
        RasterFeedSelection view;
        view.resolution = 50.8;
        for (const RasterFeedOrientation orientation :
             {RasterFeedOrientation::Rotate0, RasterFeedOrientation::Rotate90})
        {
            view.orientation = orientation;
            EXPECT_LT(MemoryOf([&] { ReadSome(tiff, view); }), 32);
        }
    }

    TEST(HostileFiles, ReductionOfRowsThatNoPlateHasIsRefusedBeforeItTakesMemory)
    {
        TiffForm form;
        form.compression = COMPRESSION_LZW;
        const std::string tiff = Claiming(form, 100000000, 100);
        RasterFeedSelection view;
        view.inputResolution = 2400;
        view.resolution = 50.8;
        EXPECT_EQ(ReasonFor(tiff, RasterFeedDepth::Header), "");
        EXPECT_THAT(
            ReasonFor(tiff, RasterFeedDepth::Header, view),
            StartsWith(
                "rows of 100000000 pixels to be reduced, which takes 1601600016 bytes of memory; up to 268435456"));
        EXPECT_LT(MemoryOf([&] { ReadSome(tiff, view); }), 64);
    }

    TEST(HostileFiles, TallImagesOfLittleDataEndEarly)
    {
        for (const std::uint16_t compression : std::vector<std::uint16_t>{
                 COMPRESSION_NONE, COMPRESSION_PACKBITS, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE, COMPRESSION_ZSTD,
                 COMPRESSION_LZMA, COMPRESSION_CCITTRLE, COMPRESSION_CCITTFAX3, COMPRESSION_CCITTFAX4})
        {
            TiffForm form;
            form.compression = compression;
            form.bits = compression >= COMPRESSION_CCITTRLE && compression <= COMPRESSION_CCITTFAX4 ? 1 : 8;
            form.width = 1;
            const Delivery delivery = Deliver(Claiming(form, 1, 0x7fffffff));
            EXPECT_FALSE(delivery.IsComplete()) << "compression " << compression;
            EXPECT_LE(delivery.lines.size(), 100u) << "compression " << compression;
        }
    }
}
