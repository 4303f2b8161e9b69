// ppfinfo: look into a print production file, check it, and see the ink.

#include "ppfinfo/Options.h"
#include "ppfinfo/Run.h"

#include <csignal>
#include <iostream>

#include <unistd.h>

namespace
{
    /// A file that is shortened while it is mapped takes its bytes from under the reader. Nothing can be saved then,
    /// but it can be said.
    void OnLostBytes(int)
    {
        constexpr char Text[] = "ppfinfo: error: the file became shorter while it was read\n";
        const ssize_t ignored = write(STDERR_FILENO, Text, sizeof Text - 1);
        static_cast<void>(ignored);
        _exit(PpfInfo::Failure);
    }
}

int main(int argc, char** argv)
{
    std::signal(SIGBUS, &OnLostBytes);
    const PpfInfo::CommandLine line = PpfInfo::ReadCommandLine(argc, argv);
    switch (line.outcome)
    {
    case PpfInfo::CommandLine::Outcome::Answer:
        std::cout << line.text << std::flush;
        return std::cout ? PpfInfo::Success : PpfInfo::Failure;
    case PpfInfo::CommandLine::Outcome::UsageError:
        std::cerr << "ppfinfo: error: " << line.text << "; see ppfinfo --help\n";
        return PpfInfo::UsageError;
    default:
        return PpfInfo::Run(line.options, std::cout, std::cerr);
    }
}
