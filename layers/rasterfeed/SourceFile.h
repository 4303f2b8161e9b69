// The bytes of one file, fetched through a host's callbacks. It stands apart because it alone knows the callbacks: it
// turns many small reads at any place into few large ones, and a failed access into the host's `failure` callback.
#pragma once

#include <RasterFeedLib.h>

#include <cstddef>
#include <cstdint>
#include <memory>

namespace RasterFeed
{
    /// A file that is open from the constructor to Close or the destructor. Read* Close?
    /// What a callback throws leaves the operation that called it.
    class SourceFile
    {
    public:
        /// Opens `name` (zero-terminated bytes). Throws Refusal if there is no file to read.
        SourceFile(const RasterFeedCallbacks& hostCallbacks, const char* name);
        SourceFile(const SourceFile&) = delete;
        SourceFile& operator=(const SourceFile&) = delete;

        /// Closes the file if it is open still; what `close` throws is lost.
        ~SourceFile();

        /// Closes the file; what `close` throws goes on, the file being gone either way.
        void Close();

        /// Bytes of the file when it was opened.
        std::uint32_t Size() const { return size; }

        /// Reads up to `count` bytes at `position`, fewer only at the end of the file (which may have moved since Size was
        /// found). Gives how many.
        std::size_t Read(std::uint64_t position, void* to, std::size_t count);

        /// Where the `count` bytes at `position` lie in memory until the next Read or Peek; null if they do not lie there in one
        /// piece, and are to be had by Read.
        const unsigned char* Peek(std::uint64_t position, std::size_t count);

    private:
        SourceFile(const RasterFeedCallbacks& hostCallbacks, FileBlock opened);
        void LoadWindow(std::uint64_t position);
        std::size_t Fetch(std::uint64_t position, unsigned char* to, std::size_t count);
        [[noreturn]] void Fail();

        RasterFeedCallbacks callbacks;
        FileBlock block;                         ///< null once closed
        std::uint32_t size = 0;                  ///< bytes
        std::uint64_t blockPosition = 0;         ///< where the block stands, bytes from the start
        std::unique_ptr<unsigned char[]> window; ///< holds a stretch of the file
        std::uint64_t windowStart = 0;           ///< where the stretch begins, bytes from the start
        std::size_t windowSize = 0;              ///< bytes of the file in the window
    };
}
