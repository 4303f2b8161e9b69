// Failures below the reader: each access in turn fails, throws or finds the file cut short, and whatever happens the file is
// closed once.

#include "tests/layers/rasterfeed/Delivery.h"
#include "tests/support/TiffMaker.h"

#include <gtest/gtest.h>

namespace RasterFeedTest
{
    using TestSupport::MakeTiff;
    using TestSupport::MixedSamples;
    using TestSupport::TiffForm;
    namespace
    {
        /// Files large enough to be read in several pieces, for every way of decoding.
        std::vector<std::string> Files()
        {
            std::vector<std::string> files;
            TiffForm form;
            form.width = 1000;
            form.height = 300;
            for (const std::uint16_t compression : std::vector<std::uint16_t>{COMPRESSION_NONE, COMPRESSION_LZW})
            {
                form.compression = compression;
                for (const std::uint32_t rowsPerStrip : {7u, 300u})
                {
                    form.rowsPerStrip = rowsPerStrip;
                    form.tileWidth = 0;
                    files.push_back(MakeTiff(form, MixedSamples(8)));
                }
                form.tileWidth = 64;
                form.tileLength = 64;
                files.push_back(MakeTiff(form, MixedSamples(8)));
            }
            return files;
        }
    }

    TEST(HostFailures, EveryFailingReadReachesTheHostAndTheFileIsClosedOnce)
    {
        for (const std::string& file : Files())
        {
            ASSERT_TRUE(Deliver(file).IsComplete());
            const int reads = MemoryFile::Reads();
            ASSERT_GT(reads, 2);
            for (int read = 1; read <= reads; ++read)
            {
                const std::pair<int HostFaults::*, const char*> ways[] = {
                    {&HostFaults::readFails, "failure"},
                    {&HostFaults::readThrows, "read"},
                    {&HostFaults::shrinksAt, ""}};
                for (const auto& [fault, thrownFrom] : ways)
                {
                    HostFaults faults;
                    faults.*fault = read;
                    const Delivery delivery = Deliver(file, faults);
                    EXPECT_FALSE(delivery.IsComplete()) << "read " << read << thrownFrom;
                    EXPECT_EQ(delivery.thrownFrom, thrownFrom) << "read " << read;
                    EXPECT_EQ(MemoryFile::Closed(), 1) << "read " << read << thrownFrom;
                }
            }
        }
    }

    TEST(HostFailures, FailuresOfOpeningAndClosing)
    {
        const std::string file = MakeTiff({}, MixedSamples(8));
        HostFaults faults;
        faults.openThrows = true;
        EXPECT_EQ(Deliver(file, faults).thrownFrom, "open");
        EXPECT_EQ(MemoryFile::Closed(), 0);

        faults = {};
        faults.isMissing = true; // no failed access: the file never opened
        EXPECT_EQ(Deliver(file, faults).end, Delivery::End::InitFailed);
        EXPECT_EQ(MemoryFile::Closed(), 1);

        // Closing may throw as well; while something else is on its way that goes first.
        faults = {};
        faults.closeThrows = true;
        EXPECT_EQ(Deliver("no TIFF", faults).end, Delivery::End::InitFailed);
        MemoryFile::Reset(file, faults);
        const RasterFeedOpenRecord record = MemoryFile::Record();
        const RasterFeedHandle reader = RasterFeedInit(&record);
        ASSERT_NE(reader, nullptr);
        std::int32_t scratch;
        EXPECT_THROW(RasterFeedEnd(reader, &scratch), HostFailure);
        EXPECT_EQ(MemoryFile::Closed(), 1);
    }

    TEST(HostFailures, CallsOutOfOrderFailAndHarmNothing)
    {
        MemoryFile::Reset(MakeTiff({}, MixedSamples(8)));
        const RasterFeedOpenRecord record = MemoryFile::Record();
        const RasterFeedHandle reader = RasterFeedInit(&record);
        ASSERT_NE(reader, nullptr);
        unsigned char line[37];
        unsigned char* const list[] = {line};
        EXPECT_NE(RasterFeedLine(reader, list, 1), 0);
        RasterFeedImageHeader header;
        ASSERT_EQ(RasterFeedHeader(reader, &header), 0);
        EXPECT_NE(RasterFeedHeader(reader, &header), 0);
        EXPECT_NE(RasterFeedLine(reader, list, 2), 0);
        for (std::uint32_t i = 0; i < header.lineCount; ++i)
        {
            EXPECT_EQ(RasterFeedLine(reader, list, 1), 0);
        }
        EXPECT_NE(RasterFeedLine(reader, list, 1), 0);
        RasterFeedEnd(reader, nullptr);
        EXPECT_EQ(MemoryFile::Closed(), 1);

        RasterFeedOpenRecord endless = MemoryFile::Record();
        for (char& c : endless.path)
        {
            c = 'a';
        }
        EXPECT_EQ(RasterFeedInit(&endless), nullptr);
    }
}
