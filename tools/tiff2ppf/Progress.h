// A line on the terminal that says how far a long conversion is. The library's call blocks and reports nothing, so a
// thread of its own watches how much the process has read.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <iosfwd>
#include <mutex>
#include <thread>

namespace Tiff2Ppf
{
    class Progress
    {
    public:
        /// Shows nothing for the time of `delay`, then a line on `terminal`, renewed several times a second. The process
        /// is about to read `bytesToRead`; 0: not known. The terminal belongs to this object until its end.
        Progress(std::ostream& theTerminal, std::uint64_t theBytesToRead, std::chrono::milliseconds delay);

        /// Takes the line away.
        ~Progress();
        Progress(const Progress&) = delete;
        Progress& operator=(const Progress&) = delete;

    private:
        void Run(std::chrono::milliseconds delay);
        void Show(std::chrono::steady_clock::duration elapsed);

        std::ostream& terminal;
        std::uint64_t bytesToRead;
        std::uint64_t bytesBefore; ///< what the process had read when this began
        std::mutex mutex;
        std::condition_variable wake;
        bool isOver = false; ///< guarded by mutex
        std::thread thread;
    };
}
