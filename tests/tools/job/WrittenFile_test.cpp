#include "job/LibraryRun.h"
#include "job/WrittenFile.h"
#include "tests/tools/job/Folder.h"

#include <gmock/gmock.h>

namespace JobsTest
{
    using namespace Jobs;
    using ::testing::StartsWith;

    /// The file that the library writes for a job of sheets with these names, and what the check says of it after damage.
    class WrittenFileTest : public ::testing::Test
    {
    protected:
        void Write(const std::vector<std::string>& sheetNames)
        {
            folder.WriteTiff("k");
            for (const std::string& name : sheetNames)
            {
                job.sheets.push_back({"J", name, {{"Black", folder / "k"}}, {}, {}});
            }
            RunLibrary(job, folder / "whole");
            whole = folder.Read("whole");
        }

        std::string FindingOf(const std::string& bytes) const { return FaultOfWrittenFile(bytes, job); }

        /// The whole file with `bytes` in place of its own at `offset`.
        std::string With(std::size_t offset, const std::string& bytes) const
        {
            return std::string(whole).replace(offset, bytes.size(), bytes);
        }

        Folder folder;
        Job job;
        std::string whole;
    };

    TEST_F(WrittenFileTest, WholeFilePasses)
    {
        Write({"S(1", std::string(214, 'x')});
        EXPECT_EQ(FindingOf(whole), "");
    }

    TEST_F(WrittenFileTest, FileThatWasCutShortFails)
    {
        Write({""});
        EXPECT_EQ(FindingOf(whole), "");
        for (std::size_t size = whole.size(); size-- > 0;)
        {
            ASSERT_NE(FindingOf(whole.substr(0, size)), "") << "cut to " << size << " bytes";
        }
        EXPECT_EQ(FindingOf(whole.substr(0, 500)), "byte 500: the file ends here without its closing comment");
        EXPECT_THAT(FindingOf(whole + '\n'), StartsWith("byte"));
    }

    TEST_F(WrittenFileTest, DirectoryThatDoesNotFitTheSectionsFails)
    {
        Write({"S1", "S2"});
        const std::size_t directory = whole.find("0000000601");
        ASSERT_EQ(whole.find("CIP3BeginSheet"), 601U);
        EXPECT_EQ(FindingOf(whole), "");

        EXPECT_THAT(FindingOf(With(directory, "0000000602")), StartsWith("byte 601: the section of sheet 1"));
        EXPECT_THAT(
            FindingOf(With(directory, "00000006x1")), StartsWith("byte 68: this is no directory entry of sheet 1"));
        EXPECT_THAT(FindingOf(With(directory + 11, "9999999999")), StartsWith("byte 601: the section of sheet 1"));
        EXPECT_THAT(FindingOf(With(directory + 11, "0000000000")), StartsWith("byte 601: the section of sheet 1"));
        EXPECT_THAT(FindingOf(With(directory + 256 + 22, "(S3)")), StartsWith("byte 324: this is no directory entry"));
        EXPECT_THAT(FindingOf(With(whole.rfind("CIP3EndSheet"), "CIP3EndShirt")), StartsWith("byte"));
        EXPECT_THAT(FindingOf(With(whole.rfind("CIP3BeginSheet"), "cIP3")), StartsWith("byte"));

        job.sheets.pop_back();
        EXPECT_NE(FindingOf(whole), "");
    }
}
