// The built program as a shell sees it: exit status, what it says where, and what it leaves behind. All else is tested
// without a process.
#include "Folder.h"
#include "ppf/Check.h"

#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

namespace
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
            m_jobs.WriteTiff("k.tif");
            m_jobs.Write("job.json", R"({"jobName":"J","sheets":[{"front":[{"separation":"K","file":"k.tif"}]}]})");
        }

        /// Runs `commands` in a shell, in a folder of its own where tiff2ppf is the program and $job the job file; gives the
        /// exit status.
        int Run(const std::string& commands)
        {
            const std::string script = "tiff2ppf() { '" TIFF2PPF_PROGRAM "' \"$@\"; }\njob=" + (m_jobs / "job.json") +
                                       "\nexport TMPDIR=" + m_temporary.Path() + "\ncd " + m_folder.Path() + "\n( " +
                                       commands + "\n) >" + (m_said / "out") + " 2>" + (m_said / "error");
            const int status = std::system(script.c_str());
            EXPECT_TRUE(m_temporary.Names().empty()) << "a temporary file was left behind";
            return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        }

        std::string Out() const { return m_said.Read("out"); }
        std::string Error() const { return m_said.Read("error"); }

        Tiff2PpfTests::Folder m_jobs;
        Tiff2PpfTests::Folder m_folder; ///< the current one
        Tiff2PpfTests::Folder m_temporary;
        Tiff2PpfTests::Folder m_said;
    };

    TEST_F(ProgramTest, SuccessIsQuiet)
    {
        EXPECT_EQ(Run("tiff2ppf $job -o made/out.ppf </dev/null"), 0);
        EXPECT_EQ(Out() + Error(), "");
        EXPECT_THAT(m_folder.Read("made/out.ppf"), StartsWith("%!PS-Adobe-3.0\n"));
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
        EXPECT_TRUE(ppf::CheckFile(m_folder / "out.ppf", ppf::CheckDepth::everything).empty());
    }

    TEST_F(ProgramTest, JobFileIsNotOverwritten)
    {
        const std::string before = m_jobs.Read("job.json");
        EXPECT_EQ(Run("tiff2ppf $job -o $job"), 2);
        EXPECT_EQ(m_jobs.Read("job.json"), before);
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
        EXPECT_TRUE(m_folder.Names().empty());
    }

    TEST_F(ProgramTest, JobFromStandardInputStandsInTheCurrentFolder)
    {
        EXPECT_EQ(Run("tiff2ppf - -o out.ppf <$job"), 1);
        EXPECT_THAT(Error(), HasSubstr(m_folder / "k.tif"));
        EXPECT_EQ(Run("cp " + (m_jobs / "k.tif") + " . && tiff2ppf - -o out.ppf <$job"), 0);
        EXPECT_EQ(Run("tiff2ppf $job -o same.ppf"), 0);
        EXPECT_EQ(m_folder.Read("out.ppf"), m_folder.Read("same.ppf"));
    }

    TEST_F(ProgramTest, StandardOutputGetsTheFileAndKeepsWhatWentBefore)
    {
        EXPECT_EQ(Run("tiff2ppf $job -o out.ppf"), 0);
        const std::string file = m_folder.Read("out.ppf");
        for (const std::string name : {"/dev/stdout", "-"})
        {
            EXPECT_EQ(Run("echo before; tiff2ppf $job -o " + name), 0);
            EXPECT_EQ(Out(), "before\n" + file) << name;
            EXPECT_EQ(Run("tiff2ppf $job -o " + name + " | cat"), 0);
            EXPECT_EQ(Out(), file) << name;
        }
        EXPECT_THAT(m_folder.Names(), ElementsAre("out.ppf"));
    }

    TEST_F(ProgramTest, HelpThatCannotBeWrittenIsAFailure)
    {
        EXPECT_EQ(Run("tiff2ppf --help >/dev/full"), 1);
        EXPECT_EQ(Error(), "tiff2ppf: error: standard output cannot be written\n");
    }

    TEST_F(ProgramTest, FullDiskIsFoundAfterWriting)
    {
        // A limit of a block on every file does what a full disk does: writing stops short.
        m_jobs.WriteTiff("k.tif", 200, 200);
        m_folder.Write("out.ppf", "older");
        EXPECT_EQ(Run("ulimit -f 1; tiff2ppf $job --compression none -o out.ppf"), 1);
        EXPECT_THAT(Error(), HasSubstr("out.ppf: the file failed its check after writing: byte "));
        EXPECT_THAT(Error(), HasSubstr(": File too large\n"));
        EXPECT_THAT(m_folder.Names(), ElementsAre("out.ppf"));
        EXPECT_EQ(m_folder.Read("out.ppf"), "older");
    }

    TEST_F(ProgramTest, SignalEndsTheProgramAndLeavesNothing)
    {
        // Work for seconds: many separations, all in one file.
        m_jobs.WriteTiff("k.tif", 1000, 1000);
        std::string front = R"({"separation":"K","file":"k.tif"})";
        for (int i = 1; i < 2000; ++i)
            front += R"(,{"separation":"K","file":"k.tif"})";
        m_jobs.Write("job.json", R"({"jobName":"J","sheets":[{"front":[)" + front + "]}]}");

        for (const int signal : {SIGTERM, SIGHUP, SIGINT})
        {
            const std::string job = m_jobs / "job.json";
            const std::string out = m_folder / "out.ppf";
            const pid_t process = fork();
            if (process == 0)
            {
                execl(
                    TIFF2PPF_PROGRAM, "tiff2ppf", "--mixed-sizes", job.c_str(), "-o", out.c_str(),
                    static_cast<char*>(nullptr));
                _exit(127);
            }
            int status = 0;
            while (m_folder.Names().empty() && waitpid(process, &status, WNOHANG) == 0)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            EXPECT_THAT(m_folder.Names(), ElementsAre(StartsWith(".")));
            kill(process, signal);
            ASSERT_EQ(waitpid(process, &status, 0), process);
            EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << "signal " << signal;
            EXPECT_TRUE(m_folder.Names().empty()) << "signal " << signal;
        }
    }
}
