// What signals do to a run: one that ends the program takes the unfinished file with it, and one about a failed write
// becomes an error that can be named.
#pragma once

#include <csignal>

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

    /// From now on, the signals that end the program call `cleanUp` first, which may do only what a signal's handler may.
    /// One function at a time; null: none.
    void CallOnSignal(void (*cleanUp)() noexcept) noexcept;

    /// For its lifetime the calling thread, and threads that it starts, take no signals.
    class SignalsBlocked
    {
    public:
        SignalsBlocked();
        ~SignalsBlocked();
        SignalsBlocked(const SignalsBlocked&) = delete;
        SignalsBlocked& operator=(const SignalsBlocked&) = delete;

        /// The thread's mask before.
        const sigset_t& Before() const { return before; }

    private:
        sigset_t before = {};
    };
}
