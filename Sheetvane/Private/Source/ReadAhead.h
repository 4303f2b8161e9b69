// Reading several separations side by side, ahead of the thread that writes them. It stands apart because it is all that the
// library knows of threads; what is read, and how, is its caller's.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace Sheetvane
{
    /// The lines of separations that are read together, as they are delivered, one after the other.
    struct Preview
    {
        std::uint32_t lineLength = 0; ///< bytes
        std::uint32_t lineCount = 0;  ///< of each separation
        std::size_t separations = 1;
        std::unique_ptr<unsigned char[]> bytes; ///< lineLength x lineCount x separations

        /// The first byte of line `index` of all lines, from 0.
        unsigned char* Line(std::size_t index) { return bytes.get() + index * lineLength; }
    };

    /// Previews by their positions from 0, each taken once, in order: ReadAhead Take*. At most as many as there are threads
    /// are read or held at a time.
    class ReadAhead
    {
    public:
        /// Reads the preview at `position`, on a thread of its own and beside others; gives up as soon as it sees `isEnding`.
        /// Null, or an exception, leaves the preview to whoever takes it.
        using Reader = std::function<std::unique_ptr<Preview>(std::size_t position, const std::atomic<bool>& isEnding)>;

        /// Begins to read `count` previews by `threadCount` threads, or by so many as can be had: with fewer than two wanted,
        /// or none to be had, nothing is read ahead. Throws std::bad_alloc.
        ReadAhead(std::size_t count, unsigned int threadCount, Reader theReader);

        /// Tells the readers that it is ending, and waits for them.
        ~ReadAhead();
        ReadAhead(const ReadAhead&) = delete;
        ReadAhead& operator=(const ReadAhead&) = delete;

        /// Waits for the next preview. Null if it is left to the caller.
        std::unique_ptr<Preview> Take();

    private:
        struct Place
        {
            bool isDone = false;
            std::unique_ptr<Preview> preview; ///< null while it is not done, and if it is left to the caller
        };

        void Work();

        const Reader reader;
        const std::size_t mostHeld;
        std::atomic<bool> isEnding = false;
        std::mutex guard; ///< of the three below
        std::vector<Place> places;
        std::size_t nextToRead = 0;
        std::size_t nextToTake = 0;
        std::condition_variable changed; ///< any of them, or isEnding
        std::vector<std::thread> threads;
    };
}
