// What the command line asks for.
#pragma once

#include <string>

namespace PpfWatch
{
    struct CommandLine
    {
        std::string answer; ///< the text that --help or --version asks for; then nothing below is filled in
        std::string config; ///< as given
        bool once = false;  ///< convert what is there and end
    };

    /// Throws UsageError.
    CommandLine ParseCommandLine(int argc, const char* const* argv);
}
