#include "job/LibraryRun.h"
#include "job/ReadBack.h"
#include "tests/tools/job/Folder.h"

#include <gmock/gmock.h>

namespace JobsTest
{
    using namespace Jobs;
    using ::testing::EndsWith;
    using ::testing::HasSubstr;

    class ReadBackTest : public ::testing::Test
    {
    protected:
        ReadBackTest()
        {
            folder.WriteTiff("k");
            job.sheets.push_back({"J", "S", {{"Cyan", folder / "k"}, {"Black", folder / "k"}}, {}, {}});
        }

        std::string Written()
        {
            RunLibrary(job, folder / "out");
            return folder.Read("out");
        }

        std::string FindingOf(const std::string& bytes) const { return FaultOnReadingBack(bytes, job); }

        Folder folder;
        Job job;
    };

    TEST_F(ReadBackTest, WholeFilePassesAndOneOfAnotherJobFails)
    {
        const std::string whole = Written();
        EXPECT_EQ(FindingOf(whole), "");
        job.sheets.front().front.pop_back();
        EXPECT_EQ(FindingOf(whole), "byte 46: the section of sheet 1 does not have the separations of the job");
        job.sheets.push_back(job.sheets.front());
        EXPECT_THAT(FindingOf(whole), EndsWith("the file has 1 of the job's 2 sheets"));
    }

    // The frame of the file is whole: only reading what lies inside it finds the fault.
    TEST_F(ReadBackTest, LostEndMarkIsFound)
    {
        std::string whole = Written();
        EXPECT_THAT(FindingOf(whole.replace(whole.find("~>"), 2, "!!")), HasSubstr("byte "));
    }

    TEST_F(ReadBackTest, JobIsReadableIfEveryParameterIsOneEntry)
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
