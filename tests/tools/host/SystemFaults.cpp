// The functions that the linker puts in the system's place.
#include "tests/tools/host/SystemFaults.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <utility>

#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <sys/types.h>

namespace
{
    struct
    {
        const char* function = "";
        int error = 0;
        int callsUntil = 0;
        std::size_t most = 0;
        bool isInterruptionNext = false;
        std::vector<std::string> calls;
    } orders;

    bool Fails(const char* function)
    {
        if (std::strcmp(function, orders.function) != 0 || --orders.callsUntil != 0)
        {
            return false;
        }
        errno = orders.error;
        return true;
    }

    bool IsInterrupted()
    {
        orders.isInterruptionNext = orders.most > 0 && !orders.isInterruptionNext;
        errno = orders.isInterruptionNext ? EINTR : errno;
        return orders.isInterruptionNext;
    }

    std::size_t Limited(std::size_t size)
    {
        return orders.most > 0 ? std::min(size, orders.most) : size;
    }

    mode_t ModeOf(va_list arguments, int flags)
    {
        return (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    }
}

namespace HostTest
{
    SystemFault::SystemFault(const char* function, int error, int nth)
    {
        orders.function = function;
        orders.error = error;
        orders.callsUntil = nth;
    }

    SystemFault::~SystemFault()
    {
        orders.function = "";
    }

    Stutter::Stutter(std::size_t most)
    {
        orders.most = most;
    }

    Stutter::~Stutter()
    {
        orders.most = 0;
    }

    std::vector<std::string> TakeCalls()
    {
        return std::exchange(orders.calls, {});
    }
}

extern "C"
{
    int __real_open(const char* name, int flags, ...);
    int __real_openat(int folder, const char* name, int flags, ...);
    ssize_t __real_read(int file, void* buffer, std::size_t size);
    ssize_t __real_write(int file, const void* buffer, std::size_t size);
    int __real_close(int file);
    int __real_fsync(int file);
    int __real_renameat(int from, const char* old, int to, const char* name);
    int __real_fchmod(int file, mode_t mode);
    int __real_fchown(int file, uid_t user, gid_t group);
    int __real_getentropy(void* bytes, std::size_t size);
    int __real_mkdir(const char* name, mode_t mode);

    int __wrap_open(const char* name, int flags, ...)
    {
        va_list arguments;
        va_start(arguments, flags);
        const mode_t mode = ModeOf(arguments, flags);
        va_end(arguments);
        return Fails("open") || IsInterrupted() ? -1 : __real_open(name, flags, mode);
    }

    int __wrap_openat(int folder, const char* name, int flags, ...)
    {
        va_list arguments;
        va_start(arguments, flags);
        const mode_t mode = ModeOf(arguments, flags);
        va_end(arguments);
        return Fails("openat") || IsInterrupted() ? -1 : __real_openat(folder, name, flags, mode);
    }

    ssize_t __wrap_read(int file, void* buffer, std::size_t size)
    {
        if (Fails("read"))
        {
            return orders.error == HostTest::SystemFault::EndOfFile ? 0 : -1;
        }
        return IsInterrupted() ? -1 : __real_read(file, buffer, Limited(size));
    }

    ssize_t __wrap_write(int file, const void* buffer, std::size_t size)
    {
        return Fails("write") || IsInterrupted() ? -1 : __real_write(file, buffer, Limited(size));
    }

    int __wrap_close(int file)
    {
        const int result = __real_close(file);
        return Fails("close") ? -1 : result;
    }

    int __wrap_fsync(int file)
    {
        struct stat status = {};
        fstat(file, &status);
        orders.calls.emplace_back(S_ISDIR(status.st_mode) ? "fsync of a folder" : "fsync of a file");
        return Fails("fsync") || IsInterrupted() ? -1 : __real_fsync(file);
    }

    int __wrap_renameat(int from, const char* old, int to, const char* name)
    {
        orders.calls.emplace_back("rename");
        return Fails("renameat") ? -1 : __real_renameat(from, old, to, name);
    }

    int __wrap_fchmod(int file, mode_t mode)
    {
        return Fails("fchmod") ? -1 : __real_fchmod(file, mode);
    }

    int __wrap_fchown(int file, uid_t user, gid_t group)
    {
        return Fails("fchown") ? -1 : __real_fchown(file, user, group);
    }

    int __wrap_getentropy(void* bytes, std::size_t size)
    {
        return Fails("getentropy") ? -1 : __real_getentropy(bytes, size);
    }

    int __wrap_mkdir(const char* name, mode_t mode)
    {
        return Fails("mkdir") ? -1 : __real_mkdir(name, mode);
    }

    // The standard library makes threads, and its call goes to the program first.
    int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*), void* argument)
    {
        if (Fails("pthread_create"))
        {
            return orders.error;
        }
        using Create = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
        static const auto next = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "pthread_create"));
        return next(thread, attributes, run, argument);
    }
}
