#include "ppfwatch/SignalQueue.h"

#include "host/Failure.h"
#include "host/Text.h"

#include <cerrno>
#include <csignal>

#include <sys/signalfd.h>

namespace PpfWatch
{
    SignalQueue::SignalQueue()
    {
        // Who starts this may have ignored it, and then no ended child could be waited for.
        std::signal(SIGCHLD, SIG_DFL);
        sigset_t signals;
        sigemptyset(&signals);
        for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGCHLD})
        {
            sigaddset(&signals, signal);
        }
        sigprocmask(SIG_BLOCK, &signals, nullptr);
        file = Host::Descriptor(signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC));
        if (!file.IsOpen())
        {
            throw Host::Failure("signals cannot be waited for: " + Host::SystemText(errno));
        }
    }

    std::optional<int> SignalQueue::Take() const
    {
        signalfd_siginfo next = {};
        const ssize_t size = Host::Uninterrupted([&] { return read(file.Number(), &next, sizeof next); });
        return size == static_cast<ssize_t>(sizeof next) ? std::optional(static_cast<int>(next.ssi_signo))
                                                         : std::nullopt;
    }
}
