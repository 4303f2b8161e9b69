// A line on the terminal that says how far a long run is. The call that takes the time blocks and reports nothing, so a
// thread of its own watches how much the process has read.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>

namespace Host
{
    class ProgressLine;

    class Progress
    {
    public:
        /// Shows nothing for the time of `delay`, then a line on the open descriptor `theTerminal`, renewed several times a
        /// second: the seconds, and which part of `theBytesToRead`, called `what`, is read; 0: not known. How many are read is
        /// what `theBytesRead` says on a thread of its own: of the process, unless the caller counts. The terminal
        /// belongs to this object until its end. Where no thread can be had nothing is shown.
        Progress(
            int theTerminal, std::uint64_t theBytesToRead, std::string theWhat, std::chrono::milliseconds delay,
            std::uint64_t (*theBytesRead)() noexcept = &BytesRead) noexcept;

        /// Takes the line away.
        ~Progress();
        Progress(const Progress&) = delete;
        Progress& operator=(const Progress&) = delete;

        /// Bytes that this process has read by system calls; 0 if the system does not say.
        static std::uint64_t BytesRead() noexcept;

    private:
        void Run(std::chrono::milliseconds delay);
        void Show(ProgressLine& line, std::chrono::steady_clock::duration elapsed) const;

        int terminal;
        std::uint64_t bytesToRead;
        std::uint64_t (*bytesRead)() noexcept;
        std::uint64_t bytesBefore; ///< what the process had read when this began
        std::string what;          ///< "of the separations"
        std::mutex mutex;
        std::condition_variable wake;
        bool isOver = false; ///< guarded by mutex
        std::thread thread;
    };
}
