// What the painter asks of memory.
#include "tests/cip3output/Bytes.h"
#include "tests/cip3output/PpfScribe.h"
#include "tests/support/Allocations.h"

#include <gtest/gtest.h>

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
                scribe.StartSurface();
                scribe.painter.BeginSeparation();

                std::string bytes = Literal(4000) + Times(99, "x");
                const ScanLineRef line = LineOver(bytes);
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
}
