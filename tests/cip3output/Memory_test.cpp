// What the painter asks of memory, and what becomes of a document when there is none.
#include "rasteroutput/ScanLineRef.h"
#include "tests/cip3output/Bytes.h"
#include "tests/cip3output/CountingAllocator.h"
#include "tests/cip3output/PpfScribe.h"

#include <gtest/gtest.h>

#include <new>

namespace PpfTest
{
    using namespace RasterOutput;

    TEST(Memory, LinesBehindTheFirstAllocateNothingButTheDocument)
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

                const std::size_t before = CountingAllocator::Count();
                const std::size_t blocksBefore = CountingAllocator::AlignedCount();
                for (int i = 0; i < 3000; ++i)
                {
                    scribe.painter.ProcessScanLine(line);
                }
                const std::size_t blocks = CountingAllocator::AlignedCount() - blocksBefore;
                // Each block brings a longer list of blocks with it, at most.
                EXPECT_LE(CountingAllocator::Count() - before, blocks) << compression << " " << encoding;
                EXPECT_LE(blocks, 10U) << compression << " " << encoding;
            }
        }
    }

    TEST(Memory, AnyAllocationThatFailsEndsInBadAllocAndAnEmptyFile)
    {
        const auto write = [](PpfScribe& scribe)
        {
            scribe.Start();
            for (const char* const name : {"a name that is longer than the string itself can hold", "S2"})
            {
                scribe.sheet.optionalParameters["CIP3AdmPSExtent"] = "";
                scribe.Sheet(name, {Literal(90000), Literal(90001)});
            }
            return scribe.Finish();
        };
        std::string expected;
        {
            PpfScribe scribe(2, RunLength, ASCII85);
            expected = write(scribe);
        }
        std::size_t failures = 0;
        for (bool failed = true; failed; ++failures)
        {
            PpfScribe scribe(2, RunLength, ASCII85);
            std::string file;
            CountingAllocator::FailAfter(failures);
            try
            {
                file = write(scribe);
                failed = CountingAllocator::StopFailing();
            }
            catch (const std::bad_alloc&)
            {
                failed = CountingAllocator::StopFailing();
                ASSERT_TRUE(failed);
            }
            // The file is opened, written and read within one call each: what is there is nothing or all of it.
            const std::string there = scribe.File();
            ASSERT_TRUE(there.empty() || there == expected) << "allocation " << failures;
            if (!failed)
            {
                ASSERT_EQ(file, expected);
            }
        }
        EXPECT_GT(failures, 30U);
    }
}
