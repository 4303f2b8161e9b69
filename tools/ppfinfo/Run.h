// What the program does once the command line is read.
#pragma once

#include "ppfinfo/Options.h"

#include <ostream>

namespace PpfInfo
{
    /// The program's exit statuses.
    enum ExitStatus
    {
        Success = 0,
        Failure = 1,
        UsageError = 2
    };

    /// Looks into the file as the options ask. What was asked for goes to `out`; a fault becomes one line on `errors`,
    /// after everything that can be read was written. Does not throw for what a file or the file system may do.
    ExitStatus Run(const Options& options, std::ostream& out, std::ostream& errors);
}
