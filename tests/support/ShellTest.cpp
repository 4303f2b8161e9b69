#include "tests/support/ShellTest.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace TestSupport
{
    namespace
    {
        /// As one word of a shell, whatever is in it.
        std::string Word(const std::string& text)
        {
            std::string word = "'";
            for (const char c : text)
            {
                word += c == '\'' ? "'\\''" : std::string(1, c);
            }
            return word + '\'';
        }
    }

    int ShellTest::Run(const std::string& commands) const
    {
        const std::string name = program.substr(program.rfind('/') + 1);
        const std::string script = name + "() { " + Word(program) +
                                   " \"$@\"; }\nexport TMPDIR=" + Word(temporary.Path()) +
                                   " PATH=" + Word(programs.Path()) + ":$PATH jobs=" + Word(jobs.Path()) +
                                   "\nexport said=" + Word(said.Path()) + "\nIFS=\ncd " + Word(folder.Path()) + "\n( " +
                                   commands + "\n) >$said/out 2>$said/error";
        const int status = std::system(script.c_str());
        EXPECT_TRUE(temporary.Names().empty()) << "a temporary file was left behind";
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    pid_t ShellTest::Start(const std::vector<std::string>& arguments) const
    {
        std::vector<char*> argv = {const_cast<char*>(program.c_str())};
        for (const std::string& argument : arguments)
        {
            argv.push_back(const_cast<char*>(argument.c_str()));
        }
        argv.push_back(nullptr);
        const std::string path = programs.Path() + ':' + std::getenv("PATH");
        const int error = open((said / "error").c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, S_IRUSR | S_IWUSR);
        const pid_t process = fork();
        if (process == 0)
        {
            const bool isReady = setenv("TMPDIR", temporary.Path().c_str(), 1) == 0 &&
                                 setenv("PATH", path.c_str(), 1) == 0 && setenv("said", said.Path().c_str(), 1) == 0 &&
                                 chdir(folder.Path().c_str()) == 0 && dup2(error, STDERR_FILENO) >= 0;
            _exit(isReady ? execv(program.c_str(), argv.data()) : 127);
        }
        close(error);
        return process;
    }

    int ShellTest::End(pid_t process, int signal)
    {
        int status = 0;
        EXPECT_EQ(kill(process, signal), 0);
        EXPECT_EQ(waitpid(process, &status, 0), process);
        return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
    }

    void ShellTest::StandIn(const std::string& name, const std::string& script) const
    {
        chmod(programs.Write(name, "#!/bin/sh\n" + script + '\n').c_str(), S_IRWXU);
    }

    bool Until(const std::function<bool()>& isSo)
    {
        constexpr int MostLooks = 24000; // two minutes: machines under load and sanitizers are slow
        for (int i = 0; i < MostLooks && !isSo(); ++i)
        {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return isSo();
    }
}
