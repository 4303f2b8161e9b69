#include <PixelScan.h>

#include <gtest/gtest.h>

#include <vector>

namespace PixelScanTest
{
    using namespace PixelScan;

    using Bytes = std::vector<unsigned char>;

    TEST(PixelScan, FindsTheFirstOfSeveralDifferences)
    {
        const Bytes bytes = {9, 9, 0, 1};
        const unsigned char* const begin = bytes.data();
        const unsigned char* const end = begin + bytes.size();
        EXPECT_EQ(firstOtherThan(begin, end, 9) - begin, 2);
        EXPECT_EQ(firstNonZero(begin, end) - begin, 0);
        EXPECT_EQ(firstNonZero(begin + 2, end) - begin, 3);
    }

    TEST(PixelScan, GivesTheEndWhereNoByteDiffers)
    {
        const Bytes bytes = {0, 0, 0, 7};
        const unsigned char* const begin = bytes.data();
        EXPECT_EQ(firstNonZero(begin, begin + 3) - begin, 3) << "looked past the end";
        EXPECT_EQ(firstOtherThan(begin, begin + 3, 0) - begin, 3) << "looked past the end";
        EXPECT_EQ(firstNonZero(nullptr, nullptr), nullptr);
        EXPECT_EQ(firstOtherThan(nullptr, nullptr, 1), nullptr);
    }
}
