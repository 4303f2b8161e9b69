#include "ppf/DocumentReader.h"

#include <gmock/gmock.h>

#include "Files.h"

namespace ppf::test
{
    namespace
    {
        using testing::ElementsAre;
        using testing::HasSubstr;

        TEST(DocumentReader, FileOfTwoSheetsIsReadInFull)
        {
            const std::string bytes = TwoSheets();
            ASSERT_EQ(bytes.size(), 2039u);
            const Document document = ReadDocument(bytes);

            EXPECT_EQ(Text(document.damage), "");
            EXPECT_EQ(document.version, "3.0");
            ASSERT_EQ(document.directory.size(), 2u);
            EXPECT_EQ(document.directory[0].position, 68u);
            EXPECT_EQ(document.directory[1].offset, 1313u);
            EXPECT_EQ(document.directory[1].length, 710u);
            EXPECT_EQ(document.directory[1].sheetName, "S2");

            ASSERT_EQ(document.sheets.size(), 2u);
            const Sheet& sheet = document.sheets[0];
            EXPECT_EQ(sheet.offset, 601u);
            EXPECT_EQ(sheet.length, 712u);
            EXPECT_EQ(sheet.JobName(), "J");
            EXPECT_EQ(sheet.SheetName(), "S1");
            EXPECT_EQ(sheet.Find("CIP3AdmPSExtent"), "[ 2 inch 1 inch ]");
            EXPECT_EQ(document.sheets[1].offset, 1313u);
            EXPECT_EQ(document.sheets[1].surfaces[0].side, Side::back);

            ASSERT_EQ(sheet.surfaces.size(), 1u);
            ASSERT_EQ(sheet.surfaces[0].previews.size(), 1u);
            const Preview& preview = sheet.surfaces[0].previews[0];
            EXPECT_EQ(preview.offset, 1209u);
            EXPECT_THAT(preview.inks, ElementsAre("Black"));
            EXPECT_EQ(preview.data, "fdff\nff0001ff7f80>");
            EXPECT_EQ(Rows(document, preview), "ffffffff/0000ff7f");
        }
    }
}
