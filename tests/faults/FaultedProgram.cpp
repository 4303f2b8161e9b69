#include "tests/faults/FaultedProgram.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <system_error>

#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace FaultTest
{
    namespace
    {
        int Checked(long result, const char* what)
        {
            if (result < 0)
            {
                throw std::system_error(errno, std::generic_category(), what);
            }
            return static_cast<int>(result);
        }

        int MemoryFile(const char* name)
        {
            return Checked(memfd_create(name, MFD_CLOEXEC), "memfd_create");
        }

        std::string ContentsOf(int file)
        {
            std::string bytes(static_cast<std::size_t>(Checked(lseek(file, 0, SEEK_END), "lseek")), '\0');
            Checked(pread(file, bytes.data(), bytes.size(), 0), "pread");
            return bytes;
        }

        void Empty(int file)
        {
            Checked(ftruncate(file, 0), "ftruncate");
            Checked(lseek(file, 0, SEEK_SET), "lseek");
        }
    }

    FaultedProgram::FaultedProgram(
        const std::string& path, const std::vector<std::string>& arguments, const std::string& folder,
        const std::string& theInput)
        : input(MemoryFile("input"))
        , output(MemoryFile("output"))
        , errors(MemoryFile("errors"))
        , stack(MemoryFile("stack"))
    {
        Checked(pwrite(input, theInput.data(), theInput.size(), 0), "pwrite");
        const int memory = MemoryFile("order");
        Checked(ftruncate(memory, sizeof(SharedMemory)), "ftruncate");
        shared = static_cast<SharedMemory*>(
            mmap(nullptr, sizeof(SharedMemory), PROT_READ | PROT_WRITE, MAP_SHARED, memory, 0));
        const std::string searched = path.substr(0, path.rfind('/')) + ':' + std::getenv("PATH");
        std::array<int, 2> pair{};
        Checked(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, pair.data()), "socketpair");
        commands = pair[0];
        process = Checked(fork(), "fork");
        if (process == 0)
        {
            std::vector<char*> argv = {const_cast<char*>(path.c_str())};
            for (const std::string& argument : arguments)
            {
                argv.push_back(const_cast<char*>(argument.c_str()));
            }
            argv.push_back(nullptr);
            if (chdir(folder.c_str()) == 0 && dup2(input, STDIN_FILENO) >= 0 && dup2(output, STDOUT_FILENO) >= 0 &&
                dup2(errors, STDERR_FILENO) >= 0 && dup2(memory, OrderDescriptor) >= 0 &&
                dup2(pair[1], CommandDescriptor) >= 0 && dup2(stack, StackDescriptor) >= 0 &&
                setenv("TMPDIR", folder.c_str(), 1) == 0 && setenv("PATH", searched.c_str(), 1) == 0 &&
                setenv("LD_LIBRARY_PATH", PROGRAMS, 1) == 0 && setenv("LD_PRELOAD", FAULTS_PRELOAD, 1) == 0 &&
                setenv("LD_BIND_NOW", "1", 1) == 0 && // once, and not in every run
                setenv("JOURNAL_STREAM", "1:2", 1) == 0 && setenv("INVOCATION_ID", "x", 1) == 0) // no times in lines
            {
                execv(path.c_str(), argv.data());
            }
            _exit(127);
        }
        close(pair[1]);
        close(memory);
    }

    FaultedProgram::~FaultedProgram()
    {
        close(commands); // ends it
        waitpid(static_cast<pid_t>(process), nullptr, 0);
        munmap(shared, sizeof(SharedMemory));
        for (const int file : {input, output, errors, stack})
        {
            close(file);
        }
    }

    Outcome FaultedProgram::Run(const Fault& fault)
    {
        Order& order = shared->order = {};
        std::strncpy(order.call, fault.call.c_str(), sizeof order.call - 1);
        order.number = fault.number;
        order.withAllAfter = fault.withAllAfter;
        order.isShort = fault.isShort;
        order.error = fault.error;
        return RunOrdered();
    }

    std::pair<Outcome, std::vector<Call>> FaultedProgram::Record()
    {
        shared->order = {};
        shared->order.isRecorded = true;
        Outcome outcome = RunOrdered();
        if (shared->order.count > MostRecorded)
        {
            throw std::runtime_error("the program makes more calls than can be recorded");
        }
        std::vector<Call> calls;
        for (long i = 0; i < shared->order.count; ++i)
        {
            calls.push_back({shared->calls[i].name, shared->calls[i].stack});
        }
        return {std::move(outcome), std::move(calls)};
    }

    Outcome FaultedProgram::RunOrdered()
    {
        Checked(lseek(input, 0, SEEK_SET), "lseek");
        Empty(output);
        Empty(errors);
        Empty(stack);
        int status = 0;
        Checked(write(commands, "r", 1), "write");
        if (read(commands, &status, sizeof status) != sizeof status)
        {
            throw std::runtime_error("the program did not start");
        }
        return {
            shared->order.hasHappened,
            WIFSIGNALED(status) ? WTERMSIG(status) : 0,
            WIFEXITED(status) ? WEXITSTATUS(status) : -1,
            ContentsOf(output),
            ContentsOf(errors),
            ContentsOf(stack)};
    }
}
