// What signals do to a run: one that ends the program takes the unfinished file with it, and one about a failed write
// becomes an error that can be named.
#pragma once

#include <string>

namespace Tiff2Ppf
{
    /// From now on the writes that would raise SIGPIPE or SIGXFSZ fail instead.
    void TurnWriteSignalsIntoErrors();

    /// From now on, until ForgetFile, SIGINT, SIGTERM and SIGHUP remove the file `path`, absolute, before they end the
    /// program; a signal that was ignored when the program started stays ignored. One file at a time; for the main
    /// thread, so that other threads have to block these signals.
    void RemoveFileOnSignal(const std::string& path);

    void ForgetFile();
}
