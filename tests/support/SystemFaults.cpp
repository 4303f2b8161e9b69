// The functions that the linker puts in the system's place.
#include "tests/support/SystemFaults.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <mutex>
#include <stdexcept>
#include <utility>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/inotify.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace TestSupport
{
    namespace
    {
        constexpr const char* Functions[] = {
#define CALL(type, failure, name, parameters, arguments) #name,
#include "tests/support/SystemCalls.inc"
#undef CALL
            "close", "fsync", "open", "openat", "pread", "pthread_create", "read", "write"};

        /// What is ordered. Calls may come from several threads.
        struct Orders
        {
            std::mutex mutex;
            std::string function;
            int error = 0;
            int until = 0;     ///< calls of `function` to come before the first that fails
            int remaining = 0; ///< calls that are still to fail
            bool hasHappened = false;
            std::size_t most = 0; ///< bytes at once; 0: no Stutter
            bool isInterrupted = false;
            std::vector<std::string> calls;
        };

        /// The ones of the process, there from the first call on: that comes before main, and the last one after it.
        Orders& Ordered()
        {
            static Orders& orders = *new Orders;
            return orders;
        }

        /// True, with errno set, if this call of `function` is one that is to fail.
        bool Fails(const char* function)
        {
            const std::lock_guard lock(Ordered().mutex);
            if (std::strncmp(function, "rename", std::strlen("rename")) == 0)
            {
                Ordered().calls.emplace_back("rename");
            }
            if (Ordered().remaining == 0 || Ordered().function != function)
            {
                return false;
            }
            if (Ordered().until > 0)
            {
                --Ordered().until;
                return false;
            }
            --Ordered().remaining;
            Ordered().hasHappened = true;
            errno = Ordered().error;
            return true;
        }

        /// What a call that may be interrupted does with `size` bytes.
        struct Turn
        {
            bool fails;
            std::size_t size;
        };

        Turn TurnOf(const char* function, std::size_t size)
        {
            {
                const std::lock_guard lock(Ordered().mutex);
                Ordered().isInterrupted = Ordered().most > 0 && !Ordered().isInterrupted;
                if (Ordered().isInterrupted)
                {
                    errno = EINTR;
                    return {true, 0};
                }
                size = Ordered().most > 0 ? std::min(size, Ordered().most) : size;
            }
            return {Fails(function), size};
        }
    }

    SystemFault::SystemFault(const std::string& function, int error, int nth, int times)
    {
        if (std::find(std::begin(Functions), std::end(Functions), function) == std::end(Functions))
        {
            throw std::invalid_argument("no call of " + function + " can be made to fail");
        }
        const std::lock_guard lock(Ordered().mutex);
        Ordered().function = function;
        Ordered().error = error;
        Ordered().until = nth - 1;
        Ordered().remaining = times;
        Ordered().hasHappened = false;
    }

    SystemFault::~SystemFault()
    {
        const std::lock_guard lock(Ordered().mutex);
        Ordered().remaining = 0;
    }

    bool SystemFault::HasHappened() const
    {
        const std::lock_guard lock(Ordered().mutex);
        return Ordered().hasHappened;
    }

    Stutter::Stutter(std::size_t most)
    {
        const std::lock_guard lock(Ordered().mutex);
        Ordered().most = most;
    }

    Stutter::~Stutter()
    {
        const std::lock_guard lock(Ordered().mutex);
        Ordered().most = 0;
    }

    std::vector<std::string> TakeCalls()
    {
        const std::lock_guard lock(Ordered().mutex);
        return std::exchange(Ordered().calls, {});
    }

    int OpenDescriptors()
    {
        // The iterator itself is open meanwhile, every time.
        return static_cast<int>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
    }
}

using TestSupport::Fails;
using TestSupport::Ordered;
using TestSupport::TurnOf;

#define REPLACED(name) __wrap_##name
#define NEXT(name) __real_##name

extern "C"
{
#define CALL(type, failure, name, parameters, arguments)                                                               \
    type NEXT(name) parameters;                                                                                        \
    type REPLACED(name) parameters                                                                                     \
    {                                                                                                                  \
        return Fails(#name) ? failure : NEXT(name) arguments;                                                          \
    }
#include "tests/support/SystemCalls.inc"
#undef CALL

    int __real_close(int file);
    int __real_fsync(int file);
    int __real_open(const char* path, int flags, ...);
    int __real_openat(int folder, const char* path, int flags, ...);
    ssize_t __real_pread(int file, void* bytes, std::size_t size, off_t offset);
    ssize_t __real_read(int file, void* bytes, std::size_t size);
    ssize_t __real_write(int file, const void* bytes, std::size_t size);

#include "tests/support/TransferCalls.inc"

    int __wrap_fsync(int file)
    {
        struct stat status = {};
        __real_fstat(file, &status);
        {
            const std::lock_guard lock(Ordered().mutex);
            Ordered().calls.emplace_back(S_ISDIR(status.st_mode) ? "fsync of a folder" : "fsync of a file");
        }
        return TurnOf("fsync", 0).fails ? -1 : __real_fsync(file);
    }

    /// Not by --wrap: it is the standard library that makes threads, and its call finds the program's function first.
    int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*), void* argument)
    {
        if (Fails("pthread_create"))
        {
            return errno; // this one gives the error as its value
        }
        using Create = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
        static const auto next = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "pthread_create"));
        return next(thread, attributes, run, argument);
    }
}
