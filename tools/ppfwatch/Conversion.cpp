#include "ppfwatch/Conversion.h"

#include "host/Failure.h"
#include "host/Text.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <tuple>
#include <vector>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace PpfWatch
{
    namespace
    {
        /// A file without a name, in memory: unlike a pipe it takes all and waits for nobody.
        Host::Descriptor MemoryFile(const std::string& content)
        {
            Host::Descriptor file(memfd_create("ppfwatch", MFD_CLOEXEC));
            if (!file.IsOpen() || !Host::WriteAll(file.Number(), content.data(), content.size()) ||
                lseek(file.Number(), 0, SEEK_SET) != 0)
            {
                throw Host::Failure("no conversion can be started: " + Host::SystemText(errno));
            }
            return file;
        }

        std::vector<char*> PointersTo(std::vector<std::string>& texts)
        {
            std::vector<char*> pointers;
            pointers.reserve(texts.size() + 1);
            for (std::string& text : texts)
            {
                pointers.push_back(text.data());
            }
            pointers.push_back(nullptr);
            return pointers;
        }

        std::vector<std::string> EnvironmentWith(const std::string& temporary)
        {
            std::vector<std::string> environment = {"TMPDIR=" + temporary};
            for (char** next = environ; *next != nullptr; ++next)
            {
                if (std::strncmp(*next, "TMPDIR=", std::strlen("TMPDIR=")) != 0)
                {
                    environment.emplace_back(*next);
                }
            }
            return environment;
        }

        /// In the new process; nothing here may allocate. SIGTERM lets a program take its unfinished files with it.
        [[noreturn]] void Become(
            const char* path, char* const* arguments, char* const* environment, const char* folder, int input, int said,
            pid_t parent)
        {
            sigset_t none;
            sigemptyset(&none);
            sigprocmask(SIG_SETMASK, &none, nullptr);
            setpgid(0, 0);
            prctl(PR_SET_PDEATHSIG, SIGTERM);
            if (getppid() != parent)
            {
                _exit(1); // the watcher was gone before it could be waited for
            }
            const int nothing = open("/dev/null", O_WRONLY);
            if (nothing >= 0 && dup2(input, STDIN_FILENO) >= 0 && dup2(nothing, STDOUT_FILENO) >= 0 &&
                dup2(said, STDERR_FILENO) >= 0 && chdir(folder) == 0)
            {
                execve(path, arguments, environment);
            }
            const char* const why = strerrordesc_np(errno);
            for (const char* const text :
                 {"error: ", path, " cannot be run: ", why == nullptr ? "unknown error" : why, "\n"})
            {
                std::ignore = write(said, text, std::strlen(text));
            }
            _exit(1);
        }
    }

    Conversion::Conversion(const JobDescription& job, const std::string& result, const Workplace& place)
        : program(job.program)
        , said(MemoryFile({}))
    {
        const Host::Descriptor input = MemoryFile(job.input);
        const std::string path = place.programs + '/' + program;
        std::vector<std::string> arguments = {program};
        arguments.insert(arguments.end(), job.arguments.begin(), job.arguments.end());
        arguments.insert(arguments.end(), {"-o", result});
        std::vector<std::string> environment = EnvironmentWith(place.temporary);
        const std::vector<char*> argumentPointers = PointersTo(arguments);
        const std::vector<char*> environmentPointers = PointersTo(environment);
        const pid_t self = getpid();

        process = fork();
        if (process == 0)
        {
            Become(
                path.c_str(), argumentPointers.data(), environmentPointers.data(), place.in.c_str(), input.Number(),
                said.Number(), self);
        }
        if (process < 0)
        {
            throw Host::Failure("no conversion can be started: " + Host::SystemText(errno));
        }
    }

    bool Conversion::HasEnded()
    {
        if (!hasEnded)
        {
            hasEnded = Host::Uninterrupted([&] { return waitpid(process, &status, WNOHANG); }) != 0;
        }
        return hasEnded;
    }

    bool Conversion::IsDone() const
    {
        return WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }

    std::string Conversion::ErrorLine() const
    {
        constexpr off_t MaxBytes = 65536;
        struct stat file = {};
        std::string text;
        if (fstat(said.Number(), &file) == 0 && file.st_size > 0)
        {
            text.resize(static_cast<std::size_t>(std::min(file.st_size, MaxBytes)));
            const ssize_t size =
                pread(said.Number(), text.data(), text.size(), file.st_size - static_cast<off_t>(text.size()));
            text.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
        }
        while (!text.empty() && text.back() == '\n')
        {
            text.pop_back();
        }
        const std::string line = text.substr(text.rfind('\n') + 1);
        const std::string begin = program + ": error: ";
        if (WIFSIGNALED(status))
        {
            const char* const name = strsignal(WTERMSIG(status));
            return begin + "the program was ended by signal " + std::to_string(WTERMSIG(status)) +
                   (name == nullptr ? "" : ", " + std::string(name)) + (line.empty() ? "" : ", after: " + line);
        }
        if (line.empty())
        {
            return begin + "the program ended with status " + std::to_string(WEXITSTATUS(status)) + " and said nothing";
        }
        return line.rfind("error: ", 0) == 0 ? program + ": " + line : line;
    }
}
