#include "ppfwatch/TiffExtent.h"
#include "tests/support/Folder.h"
#include "tests/tools/ppfwatch/SmallTiff.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace PpfWatchTest
{
    namespace
    {
        using PpfWatch::ExtentOfTiff;
        using PpfWatch::TiffExtent;

        class TiffExtentTest : public ::testing::Test
        {
        protected:
            TiffExtent ExtentOf(const std::string& bytes) { return ExtentOfTiff(folder.Write("t.tif", bytes)); }

            TestSupport::Folder folder;
        };

        TEST_F(TiffExtentTest, WholeTiffGrowsUntilItsLastByte)
        {
            for (const TiffForm form : {TiffForm::Little, TiffForm::Big, TiffForm::BigOffsets})
            {
                const std::string whole = SmallTiff(0, form);
                for (std::size_t size = 0; size < whole.size(); ++size)
                {
                    ASSERT_EQ(ExtentOf(whole.substr(0, size)), TiffExtent::Growing)
                        << size << " of " << whole.size() << " bytes, form " << static_cast<int>(form);
                }
                EXPECT_EQ(ExtentOf(whole), TiffExtent::Whole) << "form " << static_cast<int>(form);
            }
        }

        TEST_F(TiffExtentTest, FilledFileIsNotThereBeforeItsDirectoryIs)
        {
            // Some copiers make a file in its full size first.
            std::string bytes = SmallTiff();
            bytes.replace(8, bytes.size() - 8, bytes.size() - 8, '\0');
            EXPECT_NE(ExtentOf(bytes), TiffExtent::Whole);
            bytes.replace(4, 4, 4, '\0');
            EXPECT_EQ(ExtentOf(bytes), TiffExtent::Growing);
        }

        TEST_F(TiffExtentTest, WhatIsNoTiffIsNone)
        {
            EXPECT_EQ(ExtentOf("%!PS-Adobe-3.0\n"), TiffExtent::NoTiff);
            EXPECT_EQ(ExtentOf("x"), TiffExtent::NoTiff);
            EXPECT_EQ(ExtentOf("IM*\0\10\0\0\0"), TiffExtent::NoTiff);
            EXPECT_EQ(ExtentOfTiff(folder / "none"), TiffExtent::NoTiff);
            EXPECT_EQ(ExtentOfTiff(folder.Path()), TiffExtent::NoTiff);
            ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
            EXPECT_EQ(ExtentOfTiff(folder / "pipe"), TiffExtent::NoTiff) << "and is not waited for";
        }

        TEST_F(TiffExtentTest, DirectoriesInACircleEnd)
        {
            std::string bytes = SmallTiff();
            bytes[8 + 2 + 11 * 12] = 8; // the next directory is the first
            EXPECT_EQ(ExtentOf(bytes), TiffExtent::Whole);
            bytes[8 + 2 + 11 * 12 + 2] = 1; // 65544
            EXPECT_EQ(ExtentOf(bytes), TiffExtent::Growing);
        }
    }
}
