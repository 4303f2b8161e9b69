// What the command line asks for. The job may stand on it sheet by sheet, where the order of the options counts.
#pragma once

#include "job/Job.h"

#include <optional>
#include <string>

namespace Tiff2Ppf
{
    struct CommandLine
    {
        std::string answer;  ///< the text that --help or --version asks for; then nothing below is filled in
        std::string jobFile; ///< name of the job file, "-" for standard input; empty: `job` is the job
        Jobs::Job job;       ///< relative file names stand relative to the current folder; checked
        std::string output;  ///< as given
        std::optional<Jobs::Compression> compression;      ///< overrides the job file
        std::optional<Jobs::Encoding> encoding;            ///< overrides the job file
        std::optional<Jobs::Reduction> reduction;          ///< overrides the job file
        std::optional<double> inputResolution;             ///< overrides the job file
        std::optional<Jobs::Orientation> frontOrientation; ///< of all sheets of a job file
        std::optional<Jobs::Orientation> backOrientation;  ///< of all sheets of a job file
        unsigned int threads = 1;                          ///< those of the machine if not given
        bool mixedSizes = false;                           ///< separations of a sheet may differ in size
        bool verbose = false;
        bool sync = true; ///< bring the output to the disk
    };

    /// Throws Host::UsageError.
    CommandLine ParseCommandLine(int argc, const char* const* argv);
}
