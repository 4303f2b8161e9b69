#include "host/Signals.h"

#include "host/Failure.h"
#include "host/Program.h"

#include <atomic>
#include <csignal>
#include <cstring>

#include <unistd.h>

namespace Host
{
    namespace
    {
        // What the handlers look at. Folder and name are in place whenever the flag is set.
        std::atomic<bool> isDraftSet{false};
        std::atomic<void (*)() noexcept> cleanUpFirst{nullptr};
        int draftFolder = -1;
        char draftName[64];
        static_assert(std::atomic<bool>::is_always_lock_free);

        void CleanUp() noexcept
        {
            if (const auto cleanUp = cleanUpFirst.load(); cleanUp != nullptr)
            {
                cleanUp();
            }
            if (isDraftSet)
            {
                unlinkat(draftFolder, draftName, 0);
            }
        }

        /// The signal's default action is restored when this begins and follows when it ends.
        extern "C" void CleanUpAndDie(int signal)
        {
            CleanUp();
            raise(signal);
        }

        /// One cannot go on, as the access that raised the signal would be repeated.
        extern "C" void CleanUpAndFail(int)
        {
            CleanUp();
            SayPlainly("a file became shorter while it was read, or its disk cannot be read");
            _exit(ExitFailed);
        }

        void Handle(int signal, void (*handler)(int))
        {
            struct sigaction action = {};
            if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN)
            {
                return;
            }
            action = {};
            action.sa_handler = handler;
            action.sa_flags = static_cast<int>(SA_RESETHAND);
            sigaction(signal, &action, nullptr);
        }
    }

    void HandleSignals()
    {
        std::signal(SIGPIPE, SIG_IGN);
        std::signal(SIGXFSZ, SIG_IGN);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        {
            Handle(signal, &CleanUpAndDie);
        }
        Handle(SIGBUS, &CleanUpAndFail);
    }

    void RemoveOnSignal(int folder, const char* name) noexcept
    {
        ForgetDraft();
        draftFolder = folder;
        std::strncpy(draftName, name, sizeof draftName - 1);
        isDraftSet = true;
    }

    void ForgetDraft() noexcept
    {
        isDraftSet = false;
    }

    void CallOnSignal(void (*cleanUp)() noexcept) noexcept
    {
        cleanUpFirst = cleanUp;
    }

    SignalsBlocked::SignalsBlocked()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before);
    }

    SignalsBlocked::~SignalsBlocked()
    {
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }
}
