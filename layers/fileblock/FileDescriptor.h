// A file of the system, open for reading: the one place of this layer that makes system calls. It stands apart so that
// the block above it deals in positions and results only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace FileBlocks
{
    /// Owner of a descriptor of a regular file. Open? (Size | ReadAt)* Close?
    /// A failed operation leaves its reason in LastFailure() and, but for Open and Close, changes nothing else. Never throws.
    class FileDescriptor
    {
    public:
        FileDescriptor() = default;
        FileDescriptor(const FileDescriptor&) = delete;
        FileDescriptor& operator=(const FileDescriptor&) = delete;
        ~FileDescriptor() { Close(); }

        /// Opens `name` without ever waiting for it: what is not a regular file (a pipe, a device, a folder) is refused, as is
        /// a file of more than 4294967295 bytes. `sequential`: the system is told to read ahead.
        bool Open(const char* name, bool sequential) noexcept;
        bool IsOpen() const noexcept { return descriptor >= 0; }

        /// Bytes of the file at present, or -1.
        std::int64_t Size() noexcept;

        /// Reads `size` bytes at `position`, fewer only at the end of the file; gives how many, or -1. Interrupted and short
        /// reads of the system are continued.
        std::int64_t ReadAt(std::uint64_t position, void* buffer, std::size_t size) noexcept;

        /// False if the system reported an error; the file is closed either way.
        bool Close() noexcept;

        /// Why the last failed operation failed.
        enum class Failure
        {
            None,
            System,     ///< SystemError() says more
            NotRegular, ///< not a regular file
            TooLarge    ///< more bytes than a position can name
        };
        Failure LastFailure() const noexcept { return failure; }
        int SystemError() const noexcept { return systemError; }

    private:
        bool Fail(Failure what, int error) noexcept;

        int descriptor = -1;
        Failure failure = Failure::None;
        int systemError = 0; ///< an errno value
    };
}
