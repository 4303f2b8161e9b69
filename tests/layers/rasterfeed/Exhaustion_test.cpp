// Want of memory at every allocation of a reader's life, libtiff's own among them, for every way of decoding: what is delivered
// is right, and nothing is left.
#include "tests/layers/rasterfeed/Delivery.h"
#include "tests/support/Allocations.h"
#include "tests/support/TiffEditor.h"
#include "tests/support/TiffMaker.h"

#include <gtest/gtest.h>

#include <algorithm>

// What libtiff and libjpeg lose when memory runs out, for the leak sanitizer, which counts it as ours.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions()
{
    return "leak:_TIFFCheckRealloc\nleak:jinit_memory_mgr\n";
}

namespace RasterFeedTest
{
    using TestSupport::MakeTiff;
    using TestSupport::MixedSamples;
    using TestSupport::TiffEditor;
    using TestSupport::TiffForm;

    namespace
    {
        struct NamedTiff
        {
            std::string name;
            std::string tiff;
            bool ownFields;                ///< the codec adds to libtiff's
            RasterFeedSelection view = {}; ///< that is read
            std::vector<std::uint32_t> channels = {1};
        };

        /// A file for every codec, in strips and in tiles, and one with fields that libtiff does not know.
        std::vector<NamedTiff> Files()
        {
            std::vector<NamedTiff> files;
            for (const int compression :
                 {COMPRESSION_NONE, COMPRESSION_PACKBITS, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE, COMPRESSION_ZSTD,
                  COMPRESSION_LZMA, COMPRESSION_JPEG, COMPRESSION_CCITTRLE, COMPRESSION_CCITTFAX3,
                  COMPRESSION_CCITTFAX4})
            {
                TiffForm form;
                form.compression = static_cast<std::uint16_t>(compression);
                form.bits = compression >= COMPRESSION_CCITTRLE && compression <= COMPRESSION_CCITTFAX4 ? 1 : 8;
                form.rowsPerStrip = 8;
                form.resolution = 300;
                const std::string name = "compression " + std::to_string(compression);
                const bool ownFields = compression != COMPRESSION_NONE && compression != COMPRESSION_PACKBITS;
                files.push_back({name, MakeTiff(form, MixedSamples(form.bits)), ownFields});
                form.tileWidth = 16;
                form.tileLength = 16;
                files.push_back({name + " in tiles", MakeTiff(form, MixedSamples(form.bits)), ownFields});
            }
            TiffEditor editor(MakeTiff({}, MixedSamples(8)));
            editor.Set(60000, TIFF_SHORT, {1, 2, 3, 4, 5});
            editor.Set(60001, TIFF_ASCII, {'a', 0});
            files.push_back({"unknown fields", editor.Bytes(), false});
            // Held and reduced, of bits and of bytes, with sums of 64 bits and wider.
            RasterFeedSelection view;
            view.resolution = 100;
            view.orientation = RasterFeedOrientation::Rotate90;
            TiffForm form;
            form.resolution = 300;
            files.push_back({"reduced bytes", MakeTiff(form, MixedSamples(8)), false, view});
            form.bits = 1;
            view.inputResolution = 1e9;
            files.push_back({"reduced bits", MakeTiff(form, MixedSamples(1)), false, view});
            // Several channels: held together, and a plane after the other.
            TiffForm inks;
            inks.samples = 5;
            inks.photometric = PHOTOMETRIC_SEPARATED;
            inks.compression = COMPRESSION_PACKBITS;
            inks.resolution = 300;
            inks.imageResources = TestSupport::ImageResource(1045, TestSupport::UnicodeNames({u"Gold"}));
            view.inputResolution = 0;
            files.push_back(
                {"inks", TestSupport::MakePages({inks}, TestSupport::MixedInks(8)), false, view, {2, 5, 1}});
            inks.planar = PLANARCONFIG_SEPARATE;
            files.push_back({"planes", TestSupport::MakePages({inks}, TestSupport::MixedInks(8)), false, {}, {4, 1}});
            return files;
        }

        /// Everything that a host does, on memory that it has already. True: the file was read to its end.
        bool ReadInto(const RasterFeedOpenRecord& record, const NamedTiff& file, std::string& pixels)
        {
            RasterFeedImageHeader header;
            const RasterFeedHandle reader = RasterFeedInit(&record);
            const auto count = static_cast<std::uint32_t>(file.channels.size());
            bool complete = reader != nullptr &&
                            RasterFeedSelectChannels(reader, &file.view, file.channels.data(), count) == 0 &&
                            RasterFeedHeader(reader, &header) == 0;
            for (std::uint32_t i = 0; complete && i < header.lineCount * count; ++i)
            {
                unsigned char* const list[] = {
                    reinterpret_cast<unsigned char*>(&pixels[std::size_t{i} * header.lineLength])};
                complete = RasterFeedLine(reader, list, 1) == 0;
            }
            if (reader != nullptr)
            {
                RasterFeedEnd(reader, nullptr);
            }
            return complete;
        }

        void ExpectRightAtEveryAllocation(void (*fail)(long number), const NamedTiff& file)
        {
            std::string expected;
            for (const std::string& line : DeliverChannels(file.tiff, file.view, file.channels).lines)
            {
                expected += line;
            }
            ASSERT_FALSE(expected.empty());
            const RasterFeedOpenRecord record = MemoryFile::Record();
            std::string pixels(expected.size(), '\0');
            int refused = 0;
            long lost = 0;
            for (long number = 1, reached = number; reached >= number; ++number)
            {
                MemoryFile::Reset(file.tiff);
                const long before = TestSupport::LiveBlocks();
                fail(number);
                const bool complete = ReadInto(record, file, pixels);
                reached = TestSupport::AllocationCount();
                const long left = TestSupport::LiveBlocks() - before;
                TestSupport::AllowAllocations();
                // What can do without the memory goes on, with the same pixels.
                ASSERT_TRUE(!complete || pixels == expected) << file.name << ", allocation " << number;
                ASSERT_TRUE(complete || reached >= number) << file.name << ", allocation " << number;
                ASSERT_LE(left, complete ? 0 : 1) << file.name << ", allocation " << number;
                ASSERT_EQ(MemoryFile::Closed(), MemoryFile::Opened()) << file.name << ", allocation " << number;
                refused += complete ? 0 : 1;
                lost += left;
                std::fill(pixels.begin(), pixels.end(), '\0');
            }
            EXPECT_GT(refused, 10) << file.name;
            // libtiff loses its table of fields where a codec cannot add to it, and libjpeg half of its state.
            EXPECT_LE(lost, file.ownFields ? 3 : 0) << file.name;
        }
    }

    TEST(Exhaustion, OneFailingAllocationOrAllAfterItIsARefusalOrMakesNoDifference)
    {
        for (const NamedTiff& file : Files())
        {
            ExpectRightAtEveryAllocation(TestSupport::FailOneAllocation, file);
            ExpectRightAtEveryAllocation(TestSupport::FailAllocationsFrom, file);
        }
    }
}
