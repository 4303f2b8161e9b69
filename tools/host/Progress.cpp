#include "host/Progress.h"

#include "host/Descriptor.h"
#include "host/ProgressLine.h"
#include "host/Signals.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <exception>
#include <string_view>
#include <utility>

#include <fcntl.h>

namespace Host
{
    namespace
    {
        constexpr std::chrono::milliseconds Period(200);
    }

    // What runs on the thread takes no memory: nothing that it throws could be caught.

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
            const SignalsBlocked blocked; // those are for the thread that does the work
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
        ProgressLine line(terminal);
        std::unique_lock<std::mutex> lock(mutex);
        for (auto pause = delay; !wake.wait_for(lock, pause, hasEnded); pause = Period)
        {
            Show(line, std::chrono::steady_clock::now() - start);
        }
    }

    void Progress::Show(ProgressLine& line, std::chrono::steady_clock::duration elapsed) const
    {
        std::array<char, 100> part{};
        std::array<char, 150> text{};
        const bool isKnown = bytesBefore > 0 || bytesRead != &BytesRead;
        if (bytesToRead > 0 && isKnown)
        {
            const std::uint64_t done = std::min(bytesRead() - bytesBefore, bytesToRead);
            std::snprintf(
                part.data(), part.size(), ", %d %% %s read", static_cast<int>(done * 100 / bytesToRead), what.c_str());
        }
        const long long seconds = std::chrono::duration_cast<std::chrono::seconds>(elapsed).count();
        const int size = std::snprintf(text.data(), text.size(), "%lld s%s", seconds, part.data());
        line.Show({text.data(), std::min(static_cast<std::size_t>(size), text.size() - 1)});
    }
}
