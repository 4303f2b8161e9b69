// How a run ends: the exit statuses, and the two exceptions that lead to them. Whatever cannot go on throws one of these
// with the whole text of the error line; RunProgram alone turns it into a status.
#pragma once

#include <stdexcept>

namespace Host
{
    enum ExitStatus
    {
        ExitDone = 0,   ///< what was asked for is done
        ExitFailed = 1, ///< it could not be done
        ExitUsage = 2   ///< the command line, or a file that tells the program what to do, is wrong
    };

    /// An operation that could not be done.
    class Failure : public std::runtime_error
    {
    public:
        using std::runtime_error::runtime_error;
    };

    /// An order that is not accepted, found before any work was done.
    class UsageError : public std::runtime_error
    {
    public:
        using std::runtime_error::runtime_error;
    };
}
