// What the command line asks for. The job may stand on it sheet by sheet, where the order of the options counts.
#pragma once

#include "tiff2ppf/Job.h"

#include <optional>
#include <string>

namespace Tiff2Ppf
{
    struct CommandLine
    {
        std::string answer;  ///< the text that --help or --version asks for; then nothing below is filled in
        std::string jobFile; ///< name of the job file, "-" for standard input; empty: `job` is the job
        Job job;             ///< relative file names stand relative to the current folder; checked
        std::string output;  ///< as given
        std::optional<Compression> compression; ///< overrides the job file
        std::optional<Encoding> encoding;       ///< overrides the job file
        bool mixedSizes = false;                ///< separations of a sheet may differ in size
        bool verbose = false;
    };

    /// Throws UsageError.
    CommandLine ParseCommandLine(int argc, const char* const* argv);
}
