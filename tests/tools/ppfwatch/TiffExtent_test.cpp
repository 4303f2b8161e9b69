#include "ppfwatch/TiffExtent.h"
#include "tests/support/Folder.h"
#include "tests/support/TiffEditor.h"
#include "tests/support/TiffMaker.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace PpfWatchTest
{
    namespace
    {
        using PpfWatch::ExtentOfTiff;
        using PpfWatch::TiffExtent;

        std::string Tiff(const TestSupport::TiffForm& form = {})
        {
            return TestSupport::MakeTiff(form, TestSupport::MixedSamples(form.bits));
        }

        class TiffExtentTest : public ::testing::Test
        {
        protected:
            TiffExtent ExtentOf(const std::string& bytes) { return ExtentOfTiff(folder.Write("t.tif", bytes)); }

            TestSupport::Folder folder;
        };

        TEST_F(TiffExtentTest, WholeTiffGrowsUntilItsLastByte)
        {
            for (const auto& [isBigEndian, isBigTiff] : {std::pair(false, false), {true, false}, {false, true}})
            {
                TestSupport::TiffForm form;
                form.bigEndian = isBigEndian;
                form.bigTiff = isBigTiff;
                const std::string whole = Tiff(form);
                for (std::size_t size = 0; size < whole.size(); ++size)
                {
                    ASSERT_EQ(ExtentOf(whole.substr(0, size)), TiffExtent::Growing)
                        << size << " of " << whole.size() << " bytes, " << isBigEndian << isBigTiff;
                }
                EXPECT_EQ(ExtentOf(whole), TiffExtent::Whole) << isBigEndian << isBigTiff;
            }
        }

        TEST_F(TiffExtentTest, FilledFileIsNotThereBeforeItsDirectoryIs)
        {
            // Some copiers make a file in its full size first.
            std::string bytes = Tiff();
            bytes.replace(8, bytes.size() - 8, bytes.size() - 8, '\0');
            EXPECT_NE(ExtentOf(bytes), TiffExtent::Whole);
            bytes.replace(4, 4, 4, '\0');
            EXPECT_EQ(ExtentOf(bytes), TiffExtent::Growing);
        }

        TEST_F(TiffExtentTest, WhatIsNoTiffIsNone)
        {
            EXPECT_EQ(ExtentOf("%!PS-Adobe-3.0\n"), TiffExtent::NoTiff);
            EXPECT_EQ(ExtentOf("x"), TiffExtent::NoTiff);
            EXPECT_EQ(ExtentOf(std::string("IM*\0\10\0\0\0", 8)), TiffExtent::NoTiff);
            EXPECT_EQ(ExtentOfTiff(folder / "none"), TiffExtent::NoTiff);
            EXPECT_EQ(ExtentOfTiff(folder.Path()), TiffExtent::NoTiff);
            ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
            EXPECT_EQ(ExtentOfTiff(folder / "pipe"), TiffExtent::NoTiff) << "and is not waited for";
        }

        TEST_F(TiffExtentTest, DirectoriesInACircleEnd)
        {
            TestSupport::TiffEditor editor(Tiff());
            editor.SetNext(editor.DirectoryOffset());
            EXPECT_EQ(ExtentOf(editor.Bytes()), TiffExtent::Whole);
            editor.SetNext(65544);
            EXPECT_EQ(ExtentOf(editor.Bytes()), TiffExtent::Growing);
        }
    }
}
