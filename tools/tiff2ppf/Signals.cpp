#include "tiff2ppf/Signals.h"

#include <climits>
#include <csignal>
#include <cstring>

#include <unistd.h>

namespace Tiff2Ppf
{
    namespace
    {
        // What the handler looks at. The path is in place whenever the flag is set.
        char pathToRemove[PATH_MAX];
        volatile std::sig_atomic_t isPathSet = 0;

        /// The signal's default action is restored when this begins and follows when it ends.
        extern "C" void RemoveFileAndDie(int signal)
        {
            if (isPathSet != 0)
            {
                unlink(pathToRemove);
            }
            raise(signal);
        }

        void Handle(int signal)
        {
            struct sigaction action = {};
            if (sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN)
            {
                return;
            }
            action = {};
            action.sa_handler = &RemoveFileAndDie;
            action.sa_flags = static_cast<int>(SA_RESETHAND);
            sigaction(signal, &action, nullptr);
        }
    }

    void TurnWriteSignalsIntoErrors()
    {
        std::signal(SIGPIPE, SIG_IGN);
        std::signal(SIGXFSZ, SIG_IGN);
    }

    void RemoveFileOnSignal(const std::string& path)
    {
        ForgetFile();
        if (path.size() >= sizeof pathToRemove)
        {
            return; // no file can have such a name
        }
        std::memcpy(pathToRemove, path.c_str(), path.size() + 1);
        isPathSet = 1;
        for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        {
            Handle(signal);
        }
    }

    void ForgetFile()
    {
        isPathSet = 0;
    }
}
