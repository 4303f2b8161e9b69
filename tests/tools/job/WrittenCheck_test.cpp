#include "job/LibraryRun.h"
#include "job/WrittenCheck.h"
#include "tests/support/Folder.h"
#include "tests/support/PlainTiff.h"

#include <gmock/gmock.h>

namespace JobsTest
{
    using namespace Jobs;
    using ::testing::HasSubstr;
    using ::testing::StartsWith;

    /// The file that the library writes for a job of one sheet, and what the check says of it.
    class WrittenCheckTest : public ::testing::Test
    {
    protected:
        WrittenCheckTest()
        {
            folder.Write("k", TestSupport::PlainTiff());
            job.sheets.push_back({"J", "S", {{"Cyan", folder / "k"}, {"Black", folder / "k"}}, {}, {}});
        }

        std::string Written()
        {
            RunLibrary(job, folder / "out");
            return folder.Read("out");
        }

        std::string FindingOf(const std::string& bytes) const { return FindingInWrittenFile(bytes, job, false); }

        TestSupport::Folder folder;
        Job job;
    };

    TEST_F(WrittenCheckTest, WholeFilePassesAndOneOfAnotherJobDoesNot)
    {
        job.sheets.front().back = job.sheets.front().front;
        const std::string whole = Written();
        EXPECT_EQ(FindingOf(whole), "");
        job.sheets.front().back.pop_back();
        EXPECT_THAT(FindingOf(whole), HasSubstr("back has 2 separations in place of 1"));
    }

    TEST_F(WrittenCheckTest, NameIsHeldAgainstWhatAReaderGets)
    {
        Sheet& sheet = job.sheets.front();
        sheet.jobName = "(a\r\nb\rc\n\\";
        sheet.sheetName = "\xE9 ()";
        sheet.front.front().name = ")";
        EXPECT_EQ(FindingOf(Written()), "");
        sheet.parameters["CIP3AdmJobName"] = "(another one)";
        EXPECT_EQ(FindingOf(Written()), "");
        // What only a careless reader takes for too much.
        sheet.parameters.clear();
        sheet.jobName = std::string(100000, 'j');
        sheet.front.assign(1500, sheet.front.front());
        EXPECT_EQ(FindingOf(Written()), "");
    }

    // As happens where a TIFF is replaced by another one between the look at its size and its reading.
    TEST_F(WrittenCheckTest, SeparationOfAnotherSizeThanItsSheetIsFound)
    {
        for (const auto compression : {Compression::CIP3CompressionNone, Compression::CIP3CompressionRunLength})
        {
            for (const auto encoding :
                 {Encoding::CIP3EncodingBinary, Encoding::CIP3EncodingASCIIHex, Encoding::CIP3EncodingASCII85})
            {
                for (const unsigned width : {3U, 4U, 5U})
                {
                    for (const unsigned height : {1U, 2U, 3U})
                    {
                        job.compression = compression;
                        job.encoding = encoding;
                        job.sheets.front().front[1].file = folder.Write("other", TestSupport::PlainTiff(width, height));
                        const std::string finding = FindingOf(Written());
                        EXPECT_EQ(finding.empty(), width == 4 && height == 2)
                            << width << " x " << height << ", compression " << compression << ", encoding " << encoding
                            << ": " << finding;
                    }
                }
            }
        }
    }

    TEST_F(WrittenCheckTest, LostEndMarkIsFound)
    {
        std::string whole = Written();
        EXPECT_THAT(FindingOf(whole.replace(whole.find("~>"), 2, "!!")), HasSubstr("byte "));
    }

    /// Files of which only the frame can be looked at, as a parameter is not PostScript.
    class WrittenFrameTest : public WrittenCheckTest
    {
    protected:
        WrittenFrameTest() { job.sheets.front().parameters["Note"] = "(not closed"; }
    };

    TEST_F(WrittenFrameTest, FileThatWasCutShortIsFound)
    {
        const std::string whole = Written();
        EXPECT_EQ(FindingOf(whole), "");
        for (std::size_t size = whole.size(); size-- > 0;)
        {
            ASSERT_NE(FindingOf(whole.substr(0, size)), "") << "cut to " << size << " bytes";
        }
        EXPECT_EQ(FindingOf(whole.substr(0, 500)), "byte 500: the file ends here without its closing comment");
        EXPECT_NE(FindingOf(whole + '\n'), "");
    }

    TEST_F(WrittenFrameTest, DirectoryThatDoesNotFitTheSectionsIsFound)
    {
        job.sheets.push_back(job.sheets.front());
        job.sheets.front().sheetName = std::string(214, 'x');
        const std::string whole = Written();
        const std::size_t directory = whole.find("0000000601");
        ASSERT_EQ(whole.find("CIP3BeginSheet"), 601U);
        EXPECT_EQ(FindingOf(whole), "");
        const auto with = [&](std::size_t offset, const std::string& bytes)
        { return FindingOf(std::string(whole).replace(offset, bytes.size(), bytes)); };

        const char* const first = "byte 68: this is not the directory's entry of sheet 1";
        EXPECT_EQ(with(directory, "0000000602"), first);
        EXPECT_EQ(with(directory + 11, "9999999999"), first);
        EXPECT_EQ(with(directory + 11, "0000000000"), first);
        EXPECT_EQ(with(directory + 256 + 22, "(T)"), "byte 324: this is not the directory's entry of sheet 2");
        EXPECT_NE(with(directory, "00000006x1"), "");
        EXPECT_NE(with(whole.rfind("CIP3EndSheet"), "CIP3EndShirt"), "");
        EXPECT_NE(with(whole.rfind("CIP3BeginSheet"), "cIP3"), "");
        job.sheets.pop_back();
        EXPECT_THAT(FindingOf(whole), StartsWith("byte 0: the directory has 2 of 0 entries"));
    }

    TEST_F(WrittenCheckTest, JobIsReadableIfEveryParameterIsOneEntry)
    {
        auto& parameters = job.sheets.front().parameters;
        for (const char* const text :
             {"", "(Press 4)", "plain words", "[ 8.5 inch 11 inch ]", "<< /A (b) >>", "{ a b }"})
        {
            parameters["Note"] = text;
            EXPECT_TRUE(IsReadable(job)) << text;
            EXPECT_EQ(FindingOf(Written()), "") << text;
        }
        for (const char* const text : {"(not closed", ")", "[ 1", "50% gloss", "(as is \\", "1 def /Other 2"})
        {
            parameters["Note"] = text;
            EXPECT_FALSE(IsReadable(job)) << text;
        }
        parameters = {{"Two words", Number(1)}};
        EXPECT_FALSE(IsReadable(job));
        parameters = {{"Grammage", Measure{Number(135), "(g"}}};
        EXPECT_FALSE(IsReadable(job));
    }
}
