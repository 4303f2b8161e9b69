// What the painter asks of memory, and what becomes of a document when there is none.
#include "cip3output/CIP3PainterException.h"
#include "rasteroutput/ScanLineRef.h"
#include "tests/cip3output/Bytes.h"
#include "tests/cip3output/PpfScribe.h"
#include "tests/support/Allocations.h"

#include <gtest/gtest.h>

#include <new>

namespace CIP3OutputTest
{
    using namespace RasterOutput;

    TEST(Memory, LinesAfterTheFirstAllocateNothingButTheDocument)
    {
        for (const std::int32_t compression : {None, RunLength})
        {
            for (const std::int32_t encoding : {Binary, ASCIIHex, ASCII85})
            {
                PpfScribe scribe(1, compression, encoding);
                scribe.Start();
                scribe.BeginSheet();
                scribe.BeginSurface();
                scribe.painter.BeginSeparation();

                std::string bytes = Literal(4000) + Times(99, "x");
                ScanLineRef line;
                line.componentsPerSample = 1;
                line.bitsPerComponent = 8;
                line.ResetPlanes();
                auto* const begin = reinterpret_cast<unsigned char*>(bytes.data());
                line[0].SetRange(begin, begin + bytes.size());
                scribe.painter.ProcessScanLine(line);

                TestSupport::AllowAllocations();
                constexpr long Lines = 3000;
                for (long i = 0; i < Lines; ++i)
                {
                    scribe.painter.ProcessScanLine(line);
                }
                const long all = TestSupport::AllocationCount();
                const long blocks = TestSupport::AlignedAllocationCount();
                // Each block brings a longer list of blocks with it, at most.
                EXPECT_LE(all, 2 * blocks) << compression << " " << encoding;
                const auto most = Lines * 2 * static_cast<long>(bytes.size());
                EXPECT_LE(blocks, most / static_cast<long>(DocumentBuffer::BlockSize) + 1)
                    << compression << " " << encoding;
            }
        }
    }

    TEST(Memory, AnyAllocationThatFailsEndsInAFailureAndAnEmptyFile)
    {
        const auto write = [](PpfScribe& scribe)
        {
            scribe.Start();
            for (const char* const name : {"a name that is longer than the string itself can hold", "S2"})
            {
                scribe.sheet.optionalParameters["CIP3AdmPSExtent"] = "";
                scribe.Sheet(name, {Literal(90000), Literal(90001)});
            }
            scribe.painter.Finalize();
        };
        std::string expected;
        {
            PpfScribe scribe(2, RunLength, ASCII85);
            write(scribe);
            expected = scribe.File();
        }
        long number = 0;
        for (bool failed = true; failed;)
        {
            PpfScribe scribe(2, RunLength, ASCII85);
            TestSupport::FailOneAllocation(++number);
            try
            {
                write(scribe);
                failed = TestSupport::AllocationHasFailed();
            }
            catch (const std::bad_alloc&)
            {
                failed = TestSupport::AllocationHasFailed();
                ASSERT_TRUE(failed);
            }
            catch (const CIP3PainterException& failure)
            {
                // The system's own want of memory, while it opens the file.
                failed = TestSupport::AllocationHasFailed();
                ASSERT_TRUE(failed);
                ASSERT_STREQ(failure.what(), "Could not open CIP3 file");
            }
            TestSupport::AllowAllocations();
            // The file is opened and written within one call: what is there is nothing or all of it.
            const std::string there = scribe.File();
            ASSERT_TRUE(there.empty() || there == expected) << "allocation " << number;
            if (!failed)
            {
                ASSERT_EQ(there, expected);
            }
        }
        EXPECT_GT(number, 30);
    }
}
