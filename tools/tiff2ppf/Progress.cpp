#include "tiff2ppf/Progress.h"

#include <algorithm>
#include <csignal>
#include <fstream>
#include <ostream>
#include <string>

namespace Tiff2Ppf
{
    namespace
    {
        constexpr std::chrono::milliseconds Period(200);

        /// Bytes that this process has read so far; 0 if the system does not say.
        std::uint64_t BytesRead()
        {
            std::ifstream counters("/proc/self/io");
            std::string name;
            std::uint64_t value = 0;
            while (counters >> name >> value)
            {
                if (name == "rchar:")
                {
                    return value;
                }
            }
            return 0;
        }

        /// A thread that is started from here takes no signals: those are for the thread that does the work.
        class SignalsBlocked
        {
        public:
            SignalsBlocked()
            {
                sigset_t all;
                sigfillset(&all);
                pthread_sigmask(SIG_SETMASK, &all, &before);
            }
            ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before, nullptr); }
            SignalsBlocked(const SignalsBlocked&) = delete;
            SignalsBlocked& operator=(const SignalsBlocked&) = delete;

        private:
            sigset_t before = {};
        };
    }

    Progress::Progress(std::ostream& theTerminal, std::uint64_t theBytesToRead, std::chrono::milliseconds delay)
        : terminal(theTerminal)
        , bytesToRead(theBytesToRead)
        , bytesBefore(BytesRead())
    {
        const SignalsBlocked blocked;
        thread = std::thread([this, delay] { Run(delay); });
    }

    Progress::~Progress()
    {
        {
            const std::lock_guard<std::mutex> lock(mutex);
            isOver = true;
        }
        wake.notify_one();
        thread.join();
    }

    void Progress::Run(std::chrono::milliseconds delay)
    {
        const auto start = std::chrono::steady_clock::now();
        const auto hasEnded = [this] { return isOver; };
        bool isShown = false;
        std::unique_lock<std::mutex> lock(mutex);
        for (auto pause = delay; !wake.wait_for(lock, pause, hasEnded); pause = Period)
        {
            Show(std::chrono::steady_clock::now() - start);
            isShown = true;
        }
        if (isShown)
        {
            terminal << "\r\x1b[K" << std::flush;
        }
    }

    void Progress::Show(std::chrono::steady_clock::duration elapsed)
    {
        terminal << "\rtiff2ppf: " << std::chrono::duration_cast<std::chrono::seconds>(elapsed).count() << " s";
        if (bytesToRead > 0 && bytesBefore > 0)
        {
            const std::uint64_t done = std::min(BytesRead() - bytesBefore, bytesToRead);
            terminal << ", " << done * 100 / bytesToRead << " % of the separations read";
        }
        terminal << "\x1b[K" << std::flush;
    }
}
