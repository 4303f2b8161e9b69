// The built program as a shell sees it: exit status, what it says where, and what it leaves behind. All else is tested
// without a process.
#include "ppf/Check.h"
#include "tests/tools/job/Folder.h"

#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

namespace Tiff2PpfTest
{
    using ::testing::ElementsAre;
    using ::testing::HasSubstr;
    using ::testing::MatchesRegex;
    using ::testing::StartsWith;

    class ProgramTest : public ::testing::Test
    {
    protected:
        ProgramTest()
        {
            jobs.WriteTiff("k.tif");
            jobs.Write("job.json", R"({"jobName":"J","sheets":[{"front":[{"separation":"K","file":"k.tif"}]}]})");
        }

        /// Runs `commands` in a shell, in a folder of its own where tiff2ppf is the program and $job the job file; gives the
        /// exit status.
        int Run(const std::string& commands)
        {
            const std::string script = "tiff2ppf() { '" TIFF2PPF_PROGRAM "' \"$@\"; }\njob=" + (jobs / "job.json") +
                                       "\nexport TMPDIR=" + temporary.Path() + "\ncd " + folder.Path() + "\n( " +
                                       commands + "\n) >" + (said / "out") + " 2>" + (said / "error");
            const int status = std::system(script.c_str());
            EXPECT_TRUE(temporary.Names().empty()) << "a temporary file was left behind";
            return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        }

        std::string Out() const { return said.Read("out"); }
        std::string Error() const { return said.Read("error"); }

        JobsTest::Folder jobs;
        JobsTest::Folder folder; ///< the current one
        JobsTest::Folder temporary;
        JobsTest::Folder said;
    };

    TEST_F(ProgramTest, SuccessIsQuiet)
    {
        EXPECT_EQ(Run("tiff2ppf $job -o made/out.ppf </dev/null"), 0);
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
        EXPECT_EQ(Run("tiff2ppf $job -o $job"), 2);
        EXPECT_EQ(jobs.Read("job.json"), before);
    }

    TEST_F(ProgramTest, StatusTellsFailureFromMisuse)
    {
        EXPECT_EQ(Run("tiff2ppf --job J --sheet S --front K=none.tif -o out.ppf"), 1);
        EXPECT_THAT(
            Error(), MatchesRegex("tiff2ppf: error: Problem converting TIFF files to CIP3: [^\n]*none.tif[^\n]*\n"));
        EXPECT_EQ(Run("tiff2ppf none.json -o out.ppf"), 2);
        EXPECT_EQ(Error(), "tiff2ppf: error: none.json: the job file cannot be read: No such file or directory\n");
        EXPECT_EQ(Run("tiff2ppf --turbo"), 2);
        EXPECT_THAT(Error(), MatchesRegex("tiff2ppf: error: [^\n]*--turbo[^\n]*\n"));
        EXPECT_EQ(Out(), "");
        EXPECT_TRUE(folder.Names().empty());
    }

    TEST_F(ProgramTest, JobFromStandardInputStandsInTheCurrentFolder)
    {
        EXPECT_EQ(Run("tiff2ppf - -o out.ppf <$job"), 1);
        EXPECT_THAT(Error(), HasSubstr(folder / "k.tif"));
        EXPECT_EQ(Run("cp " + (jobs / "k.tif") + " . && tiff2ppf - -o out.ppf <$job"), 0);
        EXPECT_EQ(Run("tiff2ppf $job -o same.ppf"), 0);
        EXPECT_EQ(folder.Read("out.ppf"), folder.Read("same.ppf"));
    }

    TEST_F(ProgramTest, StandardOutputGetsTheFileAndKeepsWhatWentBefore)
    {
        EXPECT_EQ(Run("tiff2ppf $job -o out.ppf"), 0);
        const std::string file = folder.Read("out.ppf");
        for (const std::string name : {"/dev/stdout", "-"})
        {
            EXPECT_EQ(Run("echo before; tiff2ppf $job -o " + name), 0);
            EXPECT_EQ(Out(), "before\n" + file) << name;
            EXPECT_EQ(Run("tiff2ppf $job -o " + name + " | cat"), 0);
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
        jobs.WriteTiff("k.tif", 200, 200);
        folder.Write("out.ppf", "older");
        EXPECT_EQ(Run("ulimit -f 1; tiff2ppf $job --compression none -o out.ppf"), 1);
        EXPECT_THAT(Error(), HasSubstr("out.ppf: the file failed its check after writing: byte "));
        EXPECT_THAT(Error(), HasSubstr(": File too large\n"));
        EXPECT_THAT(folder.Names(), ElementsAre("out.ppf"));
        EXPECT_EQ(folder.Read("out.ppf"), "older");
    }

    TEST_F(ProgramTest, SignalEndsTheProgramAndLeavesNothing)
    {
        // Work for seconds: many separations, all in one file.
        jobs.WriteTiff("k.tif", 1000, 1000);
        std::string front = R"({"separation":"K","file":"k.tif"})";
        for (int i = 1; i < 2000; ++i)
        {
            front += R"(,{"separation":"K","file":"k.tif"})";
        }
        jobs.Write("job.json", R"({"jobName":"J","sheets":[{"front":[)" + front + "]}]}");

        for (const int signal : {SIGTERM, SIGHUP, SIGINT})
        {
            const std::string job = jobs / "job.json";
            const std::string out = folder / "out.ppf";
            const pid_t process = fork();
            if (process == 0)
            {
                execl(
                    TIFF2PPF_PROGRAM, "tiff2ppf", "--mixed-sizes", job.c_str(), "-o", out.c_str(),
                    static_cast<char*>(nullptr));
                _exit(127);
            }
            int status = 0;
            while (folder.Names().empty() && waitpid(process, &status, WNOHANG) == 0)
            {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
            EXPECT_THAT(folder.Names(), ElementsAre(StartsWith(".")));
            kill(process, signal);
            ASSERT_EQ(waitpid(process, &status, 0), process);
            EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << "signal " << signal;
            EXPECT_TRUE(folder.Names().empty()) << "signal " << signal;
        }
    }
}
