// The built program as a shell sees it: exit status, what it says where, and what it leaves behind. All else is tested
// without a process.
#include "host/Text.h"
#include "ppf/Check.h"
#include "tests/support/PlainTiff.h"
#include "tests/support/ShellTest.h"

#include <gmock/gmock.h>

#include <csignal>

namespace Tiff2PpfTest
{
    using ::testing::ElementsAre;
    using ::testing::HasSubstr;
    using ::testing::StartsWith;

    class ProgramTest : public TestSupport::ShellTest
    {
    protected:
        ProgramTest()
            : ShellTest(TIFF2PPF_PROGRAM)
        {
            jobs.Write("k.tif", TestSupport::PlainTiff());
            jobs.Write("job.json", R"({"jobName":"J","sheets":[{"front":[{"separation":"K","file":"k.tif"}]}]})");
        }
    };

    TEST_F(ProgramTest, SuccessIsQuiet)
    {
        EXPECT_EQ(Run("tiff2ppf $jobs/job.json -o made/out.ppf </dev/null"), 0);
        EXPECT_EQ(Out() + Error(), "");
        EXPECT_THAT(folder.Read("made/out.ppf"), StartsWith("%!PS-Adobe-3.0\n"));
    }

    TEST_F(ProgramTest, ExampleJobIsConverted)
    {
        EXPECT_EQ(Run("tiff2ppf --verbose " EXAMPLE_JOB " -o out.ppf"), 0);
        EXPECT_EQ(
            Error(), "sheet 1 \"Brochure cover\", front: 1040 x 720 pixels at 50.8 per inch: Cyan, Magenta, Yellow, "
                     "Black, Signal Orange\n"
                     "sheet 1 \"Brochure cover\", back: 1040 x 720 pixels at 50.8 per inch: Cyan, Magenta, Yellow, "
                     "Black\n"
                     "sheet 2 \"Order cards\", front: 720 x 520 pixels at 50.8 per inch: Black, Signal Orange\n");
        EXPECT_TRUE(Ppf::Check(folder.Read("out.ppf"), Ppf::CheckDepth::Everything).empty());
    }

    TEST_F(ProgramTest, JobFileIsNotOverwritten)
    {
        const std::string before = jobs.Read("job.json");
        EXPECT_EQ(Run("tiff2ppf $jobs/job.json -o $jobs/job.json"), 2);
        EXPECT_EQ(jobs.Read("job.json"), before);
    }

    TEST_F(ProgramTest, JobFromStandardInputStandsInTheCurrentFolder)
    {
        EXPECT_EQ(Run("tiff2ppf - -o out.ppf <$jobs/job.json"), 1);
        EXPECT_THAT(Error(), HasSubstr(Host::OneLine(folder / "k.tif")));
        EXPECT_EQ(Run("cp $jobs/k.tif . && tiff2ppf - -o out.ppf <$jobs/job.json"), 0);
        EXPECT_EQ(Run("tiff2ppf $jobs/job.json -o same.ppf"), 0);
        EXPECT_EQ(folder.Read("out.ppf"), folder.Read("same.ppf"));
    }

    TEST_F(ProgramTest, StandardOutputGetsTheFileAndKeepsWhatWentBefore)
    {
        EXPECT_EQ(Run("tiff2ppf $jobs/job.json -o out.ppf"), 0);
        const std::string file = folder.Read("out.ppf");
        for (const std::string name : {"/dev/stdout", "-"})
        {
            EXPECT_EQ(Run("echo before; tiff2ppf $jobs/job.json -o " + name), 0);
            EXPECT_EQ(Out(), "before\n" + file) << name;
            EXPECT_EQ(Run("tiff2ppf $jobs/job.json -o " + name + " | cat"), 0);
            EXPECT_EQ(Out(), file) << name;
        }
        EXPECT_THAT(folder.Names(), ElementsAre("out.ppf"));
    }

    TEST_F(ProgramTest, HelpThatCannotBeWrittenIsAFailure)
    {
        EXPECT_EQ(Run("tiff2ppf --version >&-"), 1);
        EXPECT_EQ(Error(), "tiff2ppf: error: standard output cannot be written: Bad file descriptor\n");
        EXPECT_EQ(Run("tiff2ppf --help >/dev/full"), 1);
        EXPECT_EQ(Error(), "tiff2ppf: error: standard output cannot be written: No space left on device\n");
    }

    TEST_F(ProgramTest, FullDiskIsFoundAfterWriting)
    {
        // A limit of a block on every file does what a full disk does: writing stops short.
        jobs.Write("k.tif", TestSupport::PlainTiff(200, 200));
        folder.Write("out.ppf", "older");
        EXPECT_EQ(Run("ulimit -f 1; tiff2ppf $jobs/job.json --compression none -o out.ppf"), 1);
        EXPECT_THAT(Error(), HasSubstr("out.ppf: the file failed its check after writing: byte "));
        EXPECT_THAT(Error(), HasSubstr(": File too large\n"));
        EXPECT_THAT(folder.Names(), ElementsAre("out.ppf"));
        EXPECT_EQ(folder.Read("out.ppf"), "older");
    }

    TEST_F(ProgramTest, SignalEndsTheProgramAndLeavesNothing)
    {
        // Work for seconds: many separations, all in one file.
        jobs.Write("k.tif", TestSupport::PlainTiff(1000, 1000));
        std::string front = R"({"separation":"K","file":"k.tif"})";
        for (int i = 1; i < 2000; ++i)
        {
            front += R"(,{"separation":"K","file":"k.tif"})";
        }
        jobs.Write("job.json", R"({"jobName":"J","sheets":[{"front":[)" + front + "]}]}");

        for (const int signal : {SIGTERM, SIGHUP, SIGINT})
        {
            const pid_t process = Start({"--mixed-sizes", jobs / "job.json", "-o", "out.ppf"});
            ASSERT_TRUE(TestSupport::Until([&] { return !folder.Names().empty(); }));
            EXPECT_THAT(folder.Names(), ElementsAre(StartsWith(".")));
            EXPECT_EQ(End(process, signal), -signal);
            EXPECT_TRUE(folder.Names().empty()) << "signal " << signal;
        }
    }
}
