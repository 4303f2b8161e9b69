// How a run ends: the exit statuses, and the two failures that lead to them. Whatever finds a fault throws one of these
// with the whole text of the error line; `main` alone turns it into a status.
#pragma once

#include <stdexcept>

namespace Tiff2Ppf
{
    enum ExitStatus
    {
        ExitWritten = 0, ///< the file is written and was checked
        ExitFailed = 1,  ///< the conversion failed, or the check did
        ExitUsage = 2    ///< the command line or the job file is wrong
    };

    /// A fault of the command line or the job file, found without opening a TIFF.
    class UsageError : public std::runtime_error
    {
    public:
        using std::runtime_error::runtime_error;
    };

    /// A conversion that failed.
    class ConversionError : public std::runtime_error
    {
    public:
        using std::runtime_error::runtime_error;
    };
}
