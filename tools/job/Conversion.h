// One run from the job to the finished file: checks before, the library, the check of what it wrote, and the file in its
// place.
#pragma once

#include "host/Output.h"
#include "job/Job.h"

#include <iosfwd>
#include <string>

namespace Jobs
{
    constexpr unsigned int MaxThreads = 256;

    struct ConversionSettings
    {
        std::string output; ///< a path, or "-" for standard output
        Host::Durability durability = Host::Durability::OnDisk;
        std::string jobFile;      ///< where the job comes from, so that it is not overwritten; may be empty
        bool mixedSizes = false;  ///< separations of a sheet may differ in size
        bool verbose = false;     ///< say a line per sheet and surface
        bool isTerminal = false;  ///< messages go to a terminal: show there how far a long conversion is, and hints
        unsigned int threads = 1; ///< separations that are reduced side by side, from 1 to MaxThreads
    };

    /// Converts `job`, which CheckJob has passed. Throws UsageError if the output is one of the job's own files, and Failure.
    /// Nothing half-written is left in either case.
    void Convert(const Job& job, const ConversionSettings& settings, std::ostream& messages);

    /// The same to an output that was chosen before, and is none of the job's own files.
    void Convert(const Job& job, const ConversionSettings& settings, Host::Output& output, std::ostream& messages);
}
