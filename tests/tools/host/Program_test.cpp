#include "host/Output.h"
#include "host/Program.h"
#include "tests/support/Folder.h"
#include "tests/support/SystemFaults.h"

#include <gmock/gmock.h>

#include <csignal>
#include <new>
#include <stdexcept>
#include <string>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace HostTest
{
    using namespace Host;
    using ::testing::ElementsAre;
    using ::testing::HasSubstr;
    using ::testing::StartsWith;

    using Work = ExitStatus (*)(int, const char* const*);

    /// Runs a program in a process of its own, in a folder of its own.
    class ProgramTest : public ::testing::Test
    {
    protected:
        /// What the process ended with: an exit status, or 1000 + the signal's number. `prepare` runs in it first.
        int Run(
            Work work, void (*prepare)() = [] {})
        {
            const std::string error = said / "error";
            const pid_t process = fork();
            if (process == 0)
            {
                dup2(open(error.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
                std::signal(SIGBUS, SIG_DFL); // a sanitizer has its own
                prepare();
                _exit(chdir(folder.Path().c_str()) == 0 ? RunProgram("program", 0, nullptr, work) : 99);
            }
            int status = 0;
            EXPECT_EQ(waitpid(process, &status, 0), process);
            return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
        }

        std::string Error() const { return said.Read("error"); }

        TestSupport::Folder folder;
        TestSupport::Folder said;
    };

    TEST_F(ProgramTest, ExceptionBecomesALineAndAStatus)
    {
        EXPECT_EQ(Run([](int, const char* const*) -> ExitStatus { throw UsageError("what\nwhere"); }), ExitUsage);
        EXPECT_EQ(Error(), "program: error: what\\x0awhere\n");
        EXPECT_EQ(Run([](int, const char* const*) -> ExitStatus { throw Failure("why"); }), ExitFailed);
        EXPECT_EQ(Error(), "program: error: why\n");
        EXPECT_EQ(Run([](int, const char* const*) -> ExitStatus { throw std::bad_alloc(); }), ExitFailed);
        EXPECT_EQ(Error(), "program: error: memory is exhausted\n");
        EXPECT_EQ(Run([](int, const char* const*) { return ExitDone; }), ExitDone);
        EXPECT_EQ(Error(), "");
    }

    TEST_F(ProgramTest, LongLineKeepsItsBeginAndItsEnd)
    {
        const auto fail = [](int, const char* const*) -> ExitStatus
        { throw Failure("begin" + std::string(10000000, 'x') + "end"); };
        EXPECT_EQ(Run(fail), ExitFailed);
        EXPECT_LT(Error().size(), 20000U);
        EXPECT_THAT(Error(), StartsWith("program: error: beginxxx"));
        EXPECT_THAT(Error(), HasSubstr("xxxend\n"));
    }

    TEST_F(ProgramTest, SignalThatIsIgnoredAsUnderNohupEndsNothing)
    {
        const auto hangUp = [](int, const char* const*)
        {
            const Output output("out", Durability::OnDisk);
            raise(SIGHUP);
            return ExitDone;
        };
        EXPECT_EQ(Run(hangUp), 1000 + SIGHUP);
        EXPECT_EQ(Run(hangUp, [] { std::signal(SIGHUP, SIG_IGN); }), ExitDone);
    }

    TEST_F(ProgramTest, FileThatIsCutUnderItsMappingIsSaidAndTakesTheDraftWithIt)
    {
        const auto touchWhatIsCut = [](int, const char* const*)
        {
            const Output output("out", Durability::OnDisk);
            EXPECT_EQ(ftruncate(output.File(), 100), 0);
            const void* const bytes = mmap(nullptr, 100, PROT_READ, MAP_SHARED, output.File(), 0);
            EXPECT_EQ(ftruncate(output.File(), 0), 0);
            return static_cast<const volatile char*>(bytes)[50] == 0 ? ExitDone : ExitUsage;
        };
        EXPECT_EQ(Run(touchWhatIsCut), ExitFailed);
        EXPECT_EQ(Error(), "program: error: a file became shorter while it was read, or its disk cannot be read\n");
        EXPECT_THAT(folder.Names(), ElementsAre());
    }

    TEST_F(ProgramTest, WriteToAPipeThatNobodyReadsIsAFailureThatIsSaid)
    {
        const auto writeToNobody = [](int, const char* const*)
        {
            int ends[2] = {};
            EXPECT_EQ(pipe(ends), 0);
            dup2(ends[1], STDOUT_FILENO);
            close(ends[0]);
            Answer("text");
            return ExitDone;
        };
        EXPECT_EQ(Run(writeToNobody), ExitFailed);
        EXPECT_EQ(Error(), "program: error: standard output cannot be written: Broken pipe\n");
    }

    TEST_F(ProgramTest, OutputDoesNotBecomeADescriptorThatThePersonReads)
    {
        const auto say = [](int, const char* const*)
        {
            Output output("out", Durability::OnDisk);
            SayError("text");
            output.Publish();
            Answer("text");
            return ExitDone;
        };
        const auto closeBoth = []
        {
            close(STDOUT_FILENO);
            close(STDERR_FILENO);
        };
        EXPECT_EQ(Run(say, closeBoth), ExitFailed);
        EXPECT_EQ(folder.Read("out"), "");
    }
}
