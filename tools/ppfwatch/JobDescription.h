// A whole job as the program that converts it takes it: its command line, and what it reads from standard input.
#pragma once

#include "ppfwatch/Config.h"
#include "ppfwatch/JobTable.h"

#include <string>
#include <vector>

namespace PpfWatch
{
    struct JobDescription
    {
        std::string program;                ///< "tiff2ppf" or "pdf2ppf"
        std::vector<std::string> arguments; ///< without the output; file names relative to the watched folder
        std::string input;                  ///< for standard input
    };

    /// Describes the order to its program. Sheets stand in natural order, inks in that of a set. A set goes as a job file; if
    /// one of its names is not UTF-8, which a job file cannot hold, as arguments. Throws Failure if files of a set are the same
    /// ink of the same side.
    JobDescription Describe(const Order& order, const Config& config);
}
