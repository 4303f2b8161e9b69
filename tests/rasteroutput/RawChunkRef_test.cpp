// Layout of chunks and the search for planes of one value.
#include "rasteroutput/RawChunkRef.h"
#include "rasteroutput/ScanLineRef.h"
#include "tests/rasteroutput/Chunks.h"

#include <gtest/gtest.h>

namespace RasterOutputTest
{
    using namespace RasterOutput;

    TEST(RawChunkRef, InterleavedDataHasOnePlaneOfAllComponents)
    {
        RawChunkRef chunk;
        chunk.componentsPerSample = 4;
        chunk.bitsPerComponent = 8;
        chunk.planar = 0;
        chunk.width = 9;
        chunk.ResetPlanes();
        EXPECT_EQ(chunk.size(), 1u);
        EXPECT_EQ(chunk.GetRowStride(), 36u);
    }

    TEST(RawChunkRef, ChunkWithoutComponentsIsKnownToBeUniform)
    {
        Bytes bytes(4);
        auto chunk = PlanarChunk<RawChunkRef>(8, 4, 1, {&bytes});
        chunk.componentsPerSample = 0;
        chunk.ResetPlanes();
        EXPECT_EQ(chunk.size(), 0u);
        EXPECT_TRUE(chunk.uniform);
        EXPECT_TRUE(chunk.uniformKnown);
        chunk.uniform = false;
        chunk.DetermineUniformity();
        EXPECT_TRUE(chunk.uniform);
    }

    struct UniformityCase
    {
        const char* remark;
        std::uint32_t bitsPerComponent;
        Bytes first;
        Bytes second;
        bool uniform;
    };

    TEST(RawChunkRef, UniformityIsThatOfEachPlaneByItself)
    {
        const UniformityCase cases[] = {
            {"planes of different values", 8, {0, 0, 0}, {9, 9, 9}, true},
            {"single bytes", 8, {5}, {6}, true},
            {"last byte of a zero plane differs", 8, {0, 0, 1}, {9, 9, 9}, false},
            {"last byte of another plane differs", 8, {0, 0, 0}, {9, 9, 8}, false},
            {"mixed bits are one value at 8 bits", 8, {0xAA, 0xAA}, {0, 0}, true},
            {"mixed bits are two values at 1 bit", 1, {0xAA, 0xAA}, {0, 0}, false},
            {"all bits set", 1, {0xFF, 0xFF}, {0, 0}, true},
            {"set bits, then clear ones", 1, {0xFF, 0x00}, {0, 0}, false},
        };
        for (UniformityCase c : cases)
        {
            SCOPED_TRACE(c.remark);
            const auto width = static_cast<std::int32_t>(c.first.size() * 8 / c.bitsPerComponent);
            auto chunk = PlanarChunk<RawChunkRef>(c.bitsPerComponent, width, 1, {&c.first, &c.second});
            chunk.DetermineUniformity();
            EXPECT_TRUE(chunk.uniformKnown);
            EXPECT_EQ(chunk.uniform, c.uniform);
        }
    }
}
