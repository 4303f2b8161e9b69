// The command line, read into one record.
#pragma once

#include "ppfinfo/Zones.h"

#include <string>

namespace PpfInfo
{
    struct Options
    {
        std::string file;
        bool json = false;
        bool check = false;
        bool csv = false;
        /// Folder for the pictures, or empty.
        std::string extractTo;
        /// Place of the report, or empty.
        std::string reportTo;
        /// Places of the documents for presses, or empty.
        std::string jdfTo;
        std::string xjdfTo;
        ZoneChoice zones;
    };

    struct CommandLine
    {
        Options options;
        /// What --help or --version ask for; empty if there is a file to look into.
        std::string answer;
    };

    /// Throws Host::UsageError.
    CommandLine ReadCommandLine(int argc, const char* const* argv);
}
