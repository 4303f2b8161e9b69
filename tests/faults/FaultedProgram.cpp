#include "tests/faults/FaultedProgram.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
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
    {
        Checked(pwrite(input, theInput.data(), theInput.size(), 0), "pwrite");
        const int shared = MemoryFile("order");
        Checked(ftruncate(shared, sizeof(Order)), "ftruncate");
        order = static_cast<Order*>(mmap(nullptr, sizeof(Order), PROT_READ | PROT_WRITE, MAP_SHARED, shared, 0));
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
                dup2(errors, STDERR_FILENO) >= 0 && dup2(shared, OrderDescriptor) >= 0 &&
                dup2(pair[1], CommandDescriptor) >= 0 && setenv("TMPDIR", folder.c_str(), 1) == 0 &&
                setenv("LD_PRELOAD", FAULTS_PRELOAD, 1) == 0)
            {
                execv(path.c_str(), argv.data());
            }
            _exit(127);
        }
        close(pair[1]);
        close(shared);
    }

    FaultedProgram::~FaultedProgram()
    {
        close(commands); // ends it
        waitpid(static_cast<pid_t>(process), nullptr, 0);
        munmap(order, sizeof(Order));
        for (const int file : {input, output, errors})
        {
            close(file);
        }
    }

    Outcome FaultedProgram::Run(const Fault& fault)
    {
        Checked(lseek(input, 0, SEEK_SET), "lseek");
        Empty(output);
        Empty(errors);
        *order = {};
        std::strncpy(order->call, fault.call.c_str(), sizeof order->call - 1);
        order->number = fault.number;
        order->withAllAfter = fault.withAllAfter;
        order->isShort = fault.isShort;
        order->error = fault.error;
        int status = 0;
        Checked(write(commands, "r", 1), "write");
        if (read(commands, &status, sizeof status) != sizeof status)
        {
            throw std::runtime_error("the program did not start");
        }
        return {
            order->hasHappened,
            WIFSIGNALED(status) ? WTERMSIG(status) : 0,
            WIFEXITED(status) ? WEXITSTATUS(status) : -1,
            ContentsOf(output),
            ContentsOf(errors),
            StackOf()};
    }

    std::string FaultedProgram::StackOf() const
    {
        // The child's modules lie where those of the process lie that it was forked from.
        std::string stack;
        for (int i = 0; i < order->frameCount; ++i)
        {
            const auto address = reinterpret_cast<std::uintptr_t>(order->frames[i]);
            std::ifstream maps("/proc/" + std::to_string(process) + "/maps");
            std::string module;
            std::uintptr_t base = 0;
            for (std::string line; std::getline(maps, line);)
            {
                std::istringstream fields(line);
                std::uintptr_t begin = 0;
                std::uintptr_t end = 0;
                char dash;
                std::string rights, offset, device, node, name;
                fields >> std::hex >> begin >> dash >> end >> rights >> offset >> device >> node >> name;
                if (name != module)
                {
                    module = name;
                    base = begin;
                }
                if (address >= begin && address < end)
                {
                    std::ostringstream text;
                    text << module << " +0x" << std::hex << address - base << '\n';
                    stack += text.str();
                }
            }
        }
        return stack;
    }
}
