// The command line, read into one record.
#pragma once

#include "ppfinfo/ZoneChoice.h"

#include <string>

namespace PpfInfo
{
    struct Options
    {
        std::string file;
        bool json = false;
        bool check = false;
        /// Folder for the pictures, or empty.
        std::string extractTo;
        /// Place of the report, or empty.
        std::string reportTo;
        ZoneChoice zones;
    };

    /// What reading the command line came to.
    struct CommandLine
    {
        enum class Outcome
        {
            Run,
            /// `text` is the answer to --help or --version.
            Answer,
            /// `text` says what is wrong.
            UsageError
        };

        Outcome outcome;
        Options options;
        std::string text;
    };

    CommandLine ReadCommandLine(int argc, const char* const* argv);
}
