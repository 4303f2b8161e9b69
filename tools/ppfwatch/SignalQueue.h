// The signals that a watcher waits for beside everything else: they come as something to read, and interrupt nothing.
#pragma once

#include "host/Descriptor.h"

#include <optional>

namespace PpfWatch
{
    class SignalQueue
    {
    public:
        /// From now on SIGTERM, SIGINT, SIGHUP and SIGCHLD come here, for as long as the process lives. Throws Failure.
        SignalQueue();

        /// For poll: readable when there is one.
        int Number() const { return file.Number(); }

        /// The next one; none if there is none. Does not wait.
        std::optional<int> Take() const;

    private:
        Host::Descriptor file;
    };
}
