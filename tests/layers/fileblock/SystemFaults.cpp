// The functions that the linker puts in the system's place.
#include "tests/layers/fileblock/SystemFaults.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <iterator>

#include <sys/stat.h>
#include <sys/types.h>

SystemFaults& Faults()
{
    static SystemFaults faults;
    return faults;
}

int OpenFiles()
{
    // The iterator itself is open meanwhile, every time.
    return static_cast<int>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

extern "C"
{
    int __real_open(const char* name, int flags, ...);
    ssize_t __real_pread(int file, void* buffer, std::size_t size, off_t position);
    int __real_fstat(int file, struct stat* state);
    int __real_close(int file);

    int __wrap_open(const char* name, int flags, ...)
    {
        if (Faults().openInterruptions > 0)
        {
            --Faults().openInterruptions;
            errno = EINTR;
            return -1;
        }
        return __real_open(name, flags);
    }

    ssize_t __wrap_pread(int file, void* buffer, std::size_t size, off_t position)
    {
        if (Faults().readInterruptions > 0)
        {
            --Faults().readInterruptions;
            errno = EINTR;
            return -1;
        }
        if (Faults().readError != 0)
        {
            errno = Faults().readError;
            return -1;
        }
        const std::size_t limit = Faults().longestRead;
        return __real_pread(file, buffer, limit != 0 ? std::min(limit, size) : size, position);
    }

    int __wrap_fstat(int file, struct stat* state)
    {
        if (Faults().fstatError != 0)
        {
            errno = Faults().fstatError;
            return -1;
        }
        return __real_fstat(file, state);
    }

    int __wrap_close(int file)
    {
        const int result = __real_close(file);
        if (Faults().closeError != 0)
        {
            errno = Faults().closeError;
            return -1;
        }
        return result;
    }
}
