// What signals do to a run: one that ends the program takes the unfinished file with it, and one about a failed write
// becomes an error that can be named.
#pragma once

namespace Host
{
    /// To be called once, first of all.
    /// - SIGINT, SIGTERM, SIGHUP remove the draft and end the program as they would have; one that is ignored when the
    ///   program starts, as under nohup, stays ignored.
    /// - SIGBUS, which is how a file that is cut under a mapping shows, removes the draft and ends the program with a line
    ///   on standard error and ExitFailed.
    /// - Writes that would raise SIGPIPE or SIGXFSZ fail instead.
    void HandleSignals();

    /// From now on, until ForgetDraft, the signals remove `name` in the open folder `folder`, which stays open until then.
    /// One file at a time.
    void RemoveOnSignal(int folder, const char* name) noexcept;

    void ForgetDraft() noexcept;
}
