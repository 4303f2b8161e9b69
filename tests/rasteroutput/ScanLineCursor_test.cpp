// Rows of a chunk, one after the other.
#include "rasteroutput/ScanLineCursor.h"
#include "tests/rasteroutput/Chunks.h"

#include <gtest/gtest.h>

namespace RasterOutputTest
{
    using namespace RasterOutput;

    // Three rows of 10 bytes, of which 9 pixels at 1 bit begin after the third byte.
    class ScanLineCursorTest : public testing::Test
    {
    protected:
        Bytes first = Bytes(30);
        Bytes second = Bytes(30);
        ScanLineCursor cursor{2, 1, 1, {PlaneOf(first), PlaneOf(second)}, 10, 3, 9, 1};
    };

    TEST_F(ScanLineCursorTest, StandsOnTheRowAskedForWithoutItsPaddingAndMovesEveryPlaneByTheStride)
    {
        EXPECT_EQ(cursor.line.GetWidth(), 9);
        EXPECT_EQ(cursor.line.GetHeight(), 1);
        EXPECT_EQ(cursor.line[0].begin, first.data() + 13);
        EXPECT_EQ(cursor.line[1].begin, second.data() + 13);
        EXPECT_EQ(cursor.line[1].size(), 2u);
        EXPECT_FALSE(cursor.line.uniformKnown);

        cursor.Step();
        EXPECT_EQ(cursor.rowIndex, 2u);
        EXPECT_EQ(cursor.line[0].begin, first.data() + 23);
        EXPECT_EQ(cursor.line[1].end, second.data() + 25);
    }

    TEST_F(ScanLineCursorTest, RebindEmptiesThePlanesAndAStrideOfZeroDropsThem)
    {
        cursor.Rebind(20, 7);
        EXPECT_EQ(cursor.rowStride, 20u);
        EXPECT_EQ(cursor.rowIndex, 7u);
        EXPECT_EQ(cursor.line.size(), 2u);
        EXPECT_EQ(cursor.line[0].begin, nullptr);
        EXPECT_FALSE(cursor.line.uniform);
        cursor.Rebind(0, 0);
        EXPECT_EQ(cursor.line.size(), 0u);
        EXPECT_TRUE(cursor.line.uniform && cursor.line.uniformKnown);
    }

    TEST_F(ScanLineCursorTest, PlanesAndSourcesBeyondTheOtherAreLeftOut)
    {
        const ScanLineCursor more(3, 1, 8, {PlaneOf(first), PlaneOf(second)}, 10, 0, 9, 0);
        EXPECT_EQ(more.line.size(), 3u);
        EXPECT_EQ(more.line[1].begin, second.data());
        EXPECT_EQ(more.line[2].begin, nullptr);
        const ScanLineCursor fewer(1, 1, 8, {PlaneOf(first), PlaneOf(second)}, 10, 0, 9, 0);
        EXPECT_EQ(fewer.line.size(), 1u);
        EXPECT_EQ(fewer.line[0].begin, first.data());
    }

    TEST_F(ScanLineCursorTest, NoSourcePlanesMakeARowWithoutPlanes)
    {
        const ScanLineCursor empty(2, 1, 8, {}, 10, 0, 9, 0);
        EXPECT_EQ(empty.line.size(), 0u);
        EXPECT_EQ(empty.line.ComponentsPerSample(), 2u);
        EXPECT_TRUE(empty.line.uniformKnown);
    }
}
