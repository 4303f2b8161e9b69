// ppfinfo: look into a print production file, check it, and see the ink.

#include <csignal>
#include <iostream>

#include <unistd.h>

#include "ppfinfo/Options.h"
#include "ppfinfo/Run.h"

namespace
{
    /// A file that is shortened while it is mapped takes its bytes from under the reader. Nothing can be saved then,
    /// but it can be said.
    void OnLostBytes(int)
    {
        constexpr char text[] = "ppfinfo: error: the file became shorter while it was read\n";
        const ssize_t ignored = write(STDERR_FILENO, text, sizeof text - 1);
        static_cast<void>(ignored);
        _exit(ppfinfo::failure);
    }
}

int main(int argc, char** argv)
{
    std::signal(SIGBUS, &OnLostBytes);
    const ppfinfo::CommandLine line = ppfinfo::ReadCommandLine(argc, argv);
    switch (line.outcome)
    {
    case ppfinfo::CommandLine::Outcome::answer:
        std::cout << line.text << std::flush;
        return std::cout ? ppfinfo::success : ppfinfo::failure;
    case ppfinfo::CommandLine::Outcome::usageError:
        std::cerr << "ppfinfo: error: " << line.text << "; see ppfinfo --help\n";
        return ppfinfo::usageError;
    default:
        return ppfinfo::Run(line.options, std::cout, std::cerr);
    }
}
