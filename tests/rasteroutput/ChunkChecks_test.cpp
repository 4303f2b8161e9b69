// Comparison and print of chunks.
#include "rasteroutput/ChunkChecks.h"
#include "tests/rasteroutput/Chunks.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <sstream>

namespace RasterOutputTest
{
    using namespace RasterOutput;

    class ChunkComparison : public testing::Test
    {
    protected:
        Bytes here{1, 2, 3, 4};
        Bytes there{1, 2, 3, 4};
        RawChunkRef chunk = PlanarChunk<RawChunkRef>(8, 4, 1, {&here});
    };

    TEST_F(ChunkComparison, EqualBytesElsewhereAreTheSameContentButOtherData)
    {
        auto other = PlanarChunk<RawChunkRef>(8, 4, 1, {&there});
        EXPECT_TRUE(HasSameContent(chunk, other));
        EXPECT_FALSE(RefersToSameData(chunk, other));
        there.back() = 0;
        EXPECT_FALSE(HasSameContent(chunk, other));
    }

    TEST_F(ChunkComparison, UniformityFlagsTakeNoPart)
    {
        RawChunkRef other = chunk;
        other.uniform = !chunk.uniform;
        other.uniformKnown = !chunk.uniformKnown;
        EXPECT_TRUE(HasSameContent(chunk, other));
        EXPECT_TRUE(RefersToSameData(chunk, other));
    }

    TEST_F(ChunkComparison, OneAndTheSameRangeIsNotRead)
    {
        // Nothing can be read in the first page.
        auto* const unreadable = reinterpret_cast<unsigned char*>(std::uintptr_t{1});
        chunk[0].SetRange(unreadable, unreadable + 1);
        EXPECT_TRUE(HasSameContent(chunk, RawChunkRef(chunk)));
    }

    TEST_F(ChunkComparison, AnyDifferenceInGeometryOrRangeCounts)
    {
        const std::function<void(RawChunkRef&)> changes[] = {
            [](RawChunkRef& c) { ++c.componentsPerSample; },
            [](RawChunkRef& c) { c.bitsPerComponent = 1; },
            [](RawChunkRef& c) { c.planar = 2; },
            [](RawChunkRef& c) { ++c.width; },
            [](RawChunkRef& c) { ++c.height; },
            [](RawChunkRef& c) { c.planes.assign(2, c[0]); },
            [](RawChunkRef& c) { --c[0].end; },
        };
        for (std::size_t i = 0; i < std::size(changes); ++i)
        {
            RawChunkRef other = chunk;
            changes[i](other);
            EXPECT_FALSE(HasSameContent(chunk, other)) << "change " << i;
            EXPECT_FALSE(RefersToSameData(chunk, other)) << "change " << i;
        }
    }

    TEST(IsUniformRange, ComparesWithTheFirstByte)
    {
        const Bytes bytes{3, 3, 3, 4};
        EXPECT_TRUE(IsUniformRange(bytes.data(), bytes.data() + 1));
        EXPECT_TRUE(IsUniformRange(bytes.data(), bytes.data() + 3));
        EXPECT_FALSE(IsUniformRange(bytes.data(), bytes.data() + 4));
    }

    TEST(ChunkPrint, TellsGeometryAndPlaneSizesLineByLine)
    {
        Bytes first(6), second(5);
        std::ostringstream print;
        print << PlanarChunk<RawChunkRef>(8, 3, 2, {&first, &second}) << "end";
        EXPECT_EQ(
            print.str(), "RawChunkRef\n"
                         "RawChunkRef.GetWidth(): 3\n"
                         "RawChunkRef.GetHeight(): 2\n"
                         "RawChunkRef.NumberOfPlanes(): 2\n"
                         "RawChunkRef.BitsPerComponent(): 8\n"
                         "RawChunkRef.ComponentsPerSample(): 2\n"
                         "RawChunkRef.IsInterleaved(): 0\n"
                         "RawChunkRef.size(): 2\n"
                         "RawChunkRef[0].size(): 6\n"
                         "RawChunkRef[1].size(): 5\n"
                         "end");
    }
}
