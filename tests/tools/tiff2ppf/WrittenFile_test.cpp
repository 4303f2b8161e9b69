#include "tiff2ppf/WrittenFile.h"

#include "Folder.h"
#include "tiff2ppf/LibraryRun.h"

#include <gmock/gmock.h>

namespace
{
    using namespace Tiff2Ppf;
    using ::testing::StartsWith;

    /// The file that the library writes for a job of sheets with these names, and what the check says of it after damage.
    class WrittenFileTest : public ::testing::Test
    {
    protected:
        void Write(const std::vector<std::string>& sheetNames)
        {
            m_folder.WriteTiff("k");
            for (const std::string& name : sheetNames)
                m_job.sheets.push_back({"J", name, {{"Black", m_folder / "k"}}, {}, {}});
            RunLibrary(m_job, m_folder / "whole");
            m_whole = m_folder.Read("whole");
        }

        std::string FaultOf(const std::string& bytes) const { return FaultOfWrittenFile(bytes, m_job); }

        /// The whole file with `bytes` in place of its own at `offset`.
        std::string With(std::size_t offset, const std::string& bytes) const
        {
            return std::string(m_whole).replace(offset, bytes.size(), bytes);
        }

        Tiff2PpfTests::Folder m_folder;
        Job m_job;
        std::string m_whole;
    };

    TEST_F(WrittenFileTest, WholeFilePasses)
    {
        Write({"S(1", std::string(214, 'x')});
        EXPECT_EQ(FaultOf(m_whole), "");
    }

    TEST_F(WrittenFileTest, FileThatWasCutShortFails)
    {
        Write({""});
        EXPECT_EQ(FaultOf(m_whole), "");
        for (std::size_t size = m_whole.size(); size-- > 0;)
            ASSERT_NE(FaultOf(m_whole.substr(0, size)), "") << "cut to " << size << " bytes";
        EXPECT_EQ(FaultOf(m_whole.substr(0, 500)), "byte 500: the file ends here without its closing comment");
        EXPECT_THAT(FaultOf(m_whole + '\n'), StartsWith("byte"));
    }

    TEST_F(WrittenFileTest, DirectoryThatDoesNotFitTheSectionsFails)
    {
        Write({"S1", "S2"});
        const std::size_t directory = m_whole.find("0000000601");
        ASSERT_EQ(m_whole.find("CIP3BeginSheet"), 601U);
        EXPECT_EQ(FaultOf(m_whole), "");

        EXPECT_THAT(FaultOf(With(directory, "0000000602")), StartsWith("byte 601: the section of sheet 1"));
        EXPECT_THAT(
            FaultOf(With(directory, "00000006x1")), StartsWith("byte 68: this is no directory entry of sheet 1"));
        EXPECT_THAT(FaultOf(With(directory + 11, "9999999999")), StartsWith("byte 601: the section of sheet 1"));
        EXPECT_THAT(FaultOf(With(directory + 11, "0000000000")), StartsWith("byte 601: the section of sheet 1"));
        EXPECT_THAT(FaultOf(With(directory + 256 + 22, "(S3)")), StartsWith("byte 324: this is no directory entry"));
        EXPECT_THAT(FaultOf(With(m_whole.rfind("CIP3EndSheet"), "CIP3EndShirt")), StartsWith("byte"));
        EXPECT_THAT(FaultOf(With(m_whole.rfind("CIP3BeginSheet"), "cIP3")), StartsWith("byte"));

        m_job.sheets.pop_back();
        EXPECT_NE(FaultOf(m_whole), "");
    }
}
