// The system calls: open, fstat, pread and close, with what each may do instead of what was asked.
#include "fileblock/FileDescriptor.h"

#include <cerrno>
#include <limits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace FileBlocks
{
    namespace
    {
        constexpr std::int64_t LargestFile = std::numeric_limits<std::uint32_t>::max();
    }

    bool FileDescriptor::Fail(Failure what, int error) noexcept
    {
        failure = what;
        systemError = error;
        return false;
    }

    bool FileDescriptor::Open(const char* name, bool sequential) noexcept
    {
        Close();
        // Asked before opening, since to open a device or the reading end of a pipe already has effects; asked again
        // afterwards, since the name may by then stand for something else. O_NONBLOCK covers the time between.
        struct stat state = {};
        if (::stat(name, &state) != 0)
        {
            return Fail(Failure::System, errno);
        }
        if (!S_ISREG(state.st_mode))
        {
            return Fail(Failure::NotRegular, 0);
        }
        do
        {
            descriptor = ::open(name, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
        } while (descriptor < 0 && errno == EINTR);
        if (descriptor < 0)
        {
            return Fail(Failure::System, errno);
        }

        const bool known = ::fstat(descriptor, &state) == 0;
        const int error = errno;
        if (known && S_ISREG(state.st_mode) && state.st_size <= LargestFile)
        {
            if (sequential)
            {
                ::posix_fadvise(descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
            }
            Fail(Failure::None, 0);
            return true;
        }
        Close();
        if (!known)
        {
            return Fail(Failure::System, error);
        }
        return Fail(S_ISREG(state.st_mode) ? Failure::TooLarge : Failure::NotRegular, 0);
    }

    std::int64_t FileDescriptor::Size() noexcept
    {
        struct stat state = {};
        if (::fstat(descriptor, &state) == 0)
        {
            return state.st_size;
        }
        Fail(Failure::System, errno);
        return -1;
    }

    std::int64_t FileDescriptor::ReadAt(std::uint64_t position, void* buffer, std::size_t size) noexcept
    {
        std::size_t done = 0;
        while (done < size)
        {
            const ssize_t count = ::pread(
                descriptor, static_cast<char*>(buffer) + done, size - done, static_cast<off_t>(position + done));
            if (count == 0)
            {
                break;
            }
            if (count > 0)
            {
                done += static_cast<std::size_t>(count);
            }
            else if (errno != EINTR)
            {
                Fail(Failure::System, errno);
                return -1;
            }
        }
        return static_cast<std::int64_t>(done);
    }

    bool FileDescriptor::Close() noexcept
    {
        if (descriptor < 0)
        {
            return true;
        }
        const int closing = descriptor;
        descriptor = -1;
        // Not repeated when interrupted: the system has let go of the descriptor by then, and another thread may own it.
        if (::close(closing) == 0 || errno == EINTR)
        {
            return true;
        }
        return Fail(Failure::System, errno);
    }
}
