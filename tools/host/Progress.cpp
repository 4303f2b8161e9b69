#include "host/Progress.h"

#include "host/Descriptor.h"
#include "host/Program.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <exception>
#include <string_view>
#include <tuple>
#include <utility>

#include <fcntl.h>

namespace Host
{
    namespace
    {
        constexpr std::chrono::milliseconds Period(200);
        constexpr std::string_view TakeLineAway = "\r\x1b[K";

        // What runs on the thread takes no memory: nothing that it throws could be caught.

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

    // Runs on the thread, too.
    std::uint64_t Progress::BytesRead() noexcept
    {
        const Descriptor counters(open("/proc/self/io", O_RDONLY | O_CLOEXEC));
        std::array<char, 512> text{};
        const ssize_t size = counters.IsOpen() ? ReadAll(counters.Number(), text.data(), text.size()) : 0;
        const std::string_view all(text.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
        constexpr std::string_view Key = "rchar: ";
        const auto at = all.find(Key);
        std::uint64_t value = 0;
        if (at != std::string_view::npos)
        {
            std::from_chars(all.data() + at + Key.size(), all.data() + all.size(), value);
        }
        return value;
    }

    Progress::Progress(
        int theTerminal, std::uint64_t theBytesToRead, std::string theWhat, std::chrono::milliseconds delay,
        std::uint64_t (*theBytesRead)() noexcept) noexcept
        : terminal(theTerminal)
        , bytesToRead(theBytesToRead)
        , bytesRead(theBytesRead)
        , bytesBefore(theBytesRead())
        , what(std::move(theWhat))
    {
        try
        {
            const SignalsBlocked blocked;
            thread = std::thread([this, delay] { Run(delay); });
        }
        catch (const std::exception&)
        {
            // The run is what counts, not what is shown of it.
        }
    }

    Progress::~Progress()
    {
        if (!thread.joinable())
        {
            return;
        }
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
            std::ignore = WriteAll(terminal, TakeLineAway.data(), TakeLineAway.size());
        }
    }

    void Progress::Show(std::chrono::steady_clock::duration elapsed) const
    {
        std::array<char, 200> line{};
        std::array<char, 100> part{};
        const bool isKnown = bytesBefore > 0 || bytesRead != &BytesRead;
        if (bytesToRead > 0 && isKnown)
        {
            const std::uint64_t done = std::min(bytesRead() - bytesBefore, bytesToRead);
            std::snprintf(
                part.data(), part.size(), ", %d %% %s read", static_cast<int>(done * 100 / bytesToRead), what.c_str());
        }
        const long long seconds = std::chrono::duration_cast<std::chrono::seconds>(elapsed).count();
        const int size =
            std::snprintf(line.data(), line.size(), "\r%s: %lld s%s\x1b[K", ProgramName(), seconds, part.data());
        std::ignore = WriteAll(terminal, line.data(), std::min(static_cast<std::size_t>(size), line.size() - 1));
    }
}
