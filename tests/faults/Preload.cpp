// Loaded into a program before all other libraries: its allocations and system calls come here, and the one that is ordered
// fails. main is run once for each byte on CommandDescriptor, each time in a process of its own, forked where the program is
// loaded and has done nothing yet; this costs a tenth of starting it anew. The process's wait status is the answer.
#include "tests/faults/Order.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <tuple>

#include <dirent.h>
#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/inotify.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
    using FaultTest::CommandDescriptor;
    using FaultTest::Order;
    using FaultTest::OrderDescriptor;
    using FaultTest::StackDescriptor;

    constexpr unsigned SecondsUntilHung = 20;

    /// Bytes of a call that is cut short: fewer than any file has.
    constexpr std::size_t ShortSize = 7;

    /// The order, once main has begun.
    Order* order = nullptr;
    FaultTest::RecordedCall* recordedCalls = nullptr;
    int (*programMain)(int, char**, char**) = nullptr;

    void Record(const char* call)
    {
        const long index = __atomic_fetch_add(&order->count, 1, __ATOMIC_RELAXED);
        if (index >= FaultTest::MostRecorded)
        {
            return;
        }
        FaultTest::RecordedCall& record = recordedCalls[index];
        std::strncpy(record.name, call, sizeof record.name - 1);
        void* frames[60];
        const int count = backtrace(frames, sizeof frames / sizeof *frames);
        // FNV-1a, whose constants these are, of the places in their modules.
        record.stack = 0xCBF29CE484222325U;
        for (int i = 0; i < count; ++i)
        {
            dl_find_object module = {};
            _dl_find_object(frames[i], &module);
            const auto place = static_cast<char*>(frames[i]) - static_cast<char*>(module.dlfo_map_start);
            record.stack = (record.stack ^ static_cast<std::uint64_t>(place)) * 0x100000001B3U;
        }
    }

    /// Counts a call; true if it is the one that is ordered to fail.
    bool Fails(const char* call)
    {
        if (order != nullptr && order->isRecorded)
        {
            Record(call);
        }
        if (order == nullptr || std::strcmp(order->call, call) != 0)
        {
            return false;
        }
        const long number = __atomic_add_fetch(&order->count, 1, __ATOMIC_RELAXED);
        if (number != order->number && !(order->withAllAfter && number > order->number))
        {
            return false;
        }
        if (!order->hasHappened)
        {
            order->hasHappened = true;
            void* frames[40];
            backtrace_symbols_fd(frames, backtrace(frames, sizeof frames / sizeof *frames), StackDescriptor);
        }
        errno = order->error;
        return true;
    }

    /// What a call that reads or writes does with `size` bytes.
    struct Turn
    {
        bool fails;
        std::size_t size;
    };

    Turn TurnOf(const char* call, std::size_t size)
    {
        if (!Fails(call))
        {
            return {false, size};
        }
        return order->isShort ? Turn{false, std::min(size, ShortSize)} : Turn{true, 0};
    }

    template <class Function>
    Function* Next(Function*, const char* name)
    {
        return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
    }

    int RunEachTime(int argc, char** argv, char** environment)
    {
        void* frames[1];
        backtrace(frames, 1); // loads what it needs
        auto* const shared = static_cast<FaultTest::SharedMemory*>(
            mmap(nullptr, sizeof(FaultTest::SharedMemory), PROT_READ | PROT_WRITE, MAP_SHARED, OrderDescriptor, 0));
        // What the program starts itself runs as it does anywhere.
        unsetenv("LD_PRELOAD");
        unsetenv("LD_BIND_NOW");
        char command;
        while (read(CommandDescriptor, &command, 1) == 1)
        {
            const pid_t child = fork();
            if (child == 0)
            {
                close(CommandDescriptor);
                close(OrderDescriptor);
                alarm(SecondsUntilHung);
                recordedCalls = shared->calls;
                order = &shared->order;
                return programMain(argc, argv, environment);
            }
            int status = 0;
            waitpid(child, &status, 0);
            std::ignore = write(CommandDescriptor, &status, sizeof status);
        }
        _exit(0);
    }
}

#define REPLACED(name) name
#define NEXT(name) Next(&name, #name)

extern "C"
{
    void* __libc_malloc(std::size_t size);
    void* __libc_calloc(std::size_t count, std::size_t size);
    void* __libc_realloc(void* memory, std::size_t size);
    void* __libc_memalign(std::size_t alignment, std::size_t size);
    int __libc_start_main(
        int (*theMain)(int, char**, char**), int argc, char** argv, void (*begin)(), void (*end)(), void (*unload)(),
        void* stackEnd);

    int __libc_start_main(
        int (*theMain)(int, char**, char**), int argc, char** argv, void (*begin)(), void (*end)(), void (*unload)(),
        void* stackEnd)
    {
        programMain = theMain;
        return NEXT(__libc_start_main)(RunEachTime, argc, argv, begin, end, unload, stackEnd);
    }

    void* malloc(std::size_t size)
    {
        return Fails("allocation") ? nullptr : __libc_malloc(size);
    }

    void* calloc(std::size_t count, std::size_t size)
    {
        return Fails("allocation") ? nullptr : __libc_calloc(count, size);
    }

    void* realloc(void* memory, std::size_t size)
    {
        return Fails("allocation") ? nullptr : __libc_realloc(memory, size);
    }

    void* memalign(std::size_t alignment, std::size_t size)
    {
        return Fails("allocation") ? nullptr : __libc_memalign(alignment, size);
    }

    void* aligned_alloc(std::size_t alignment, std::size_t size)
    {
        return memalign(alignment, size);
    }

    int posix_memalign(void** memory, std::size_t alignment, std::size_t size)
    {
        void* const block = memalign(alignment, size);
        if (block == nullptr)
        {
            return ENOMEM;
        }
        *memory = block;
        return 0;
    }

#define CALL(type, failure, name, parameters, arguments)                                                               \
    type name parameters                                                                                               \
    {                                                                                                                  \
        return Fails(#name) ? failure : NEXT(name) arguments;                                                          \
    }
#include "tests/support/SystemCalls.inc"
#undef CALL
#include "tests/support/TransferCalls.inc"

    int fcntl(int file, int command, ...)
    {
        va_list arguments;
        va_start(arguments, command);
        void* const argument = va_arg(arguments, void*);
        va_end(arguments);
        return Fails("fcntl") ? -1 : NEXT(fcntl)(file, command, argument);
    }

    // Nothing here outlives a power cut, and the disk is slow.
    int fsync(int)
    {
        return Fails("fsync") ? -1 : 0;
    }

    int posix_fallocate(int file, off_t offset, off_t size)
    {
        return Fails("posix_fallocate") ? errno : NEXT(posix_fallocate)(file, offset, size);
    }

    int posix_spawnp(
        pid_t* process, const char* name, const posix_spawn_file_actions_t* actions,
        const posix_spawnattr_t* attributes, char* const* arguments, char* const* environment)
    {
        return Fails("posix_spawnp") ? errno
                                     : NEXT(posix_spawnp)(process, name, actions, attributes, arguments, environment);
    }

    int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*run)(void*), void* argument)
    {
        return Fails("pthread_create") ? errno : NEXT(pthread_create)(thread, attributes, run, argument);
    }

    ssize_t writev(int file, const iovec* pieces, int count)
    {
        if (!Fails("writev"))
        {
            return NEXT(writev)(file, pieces, count);
        }
        return order->isShort && count > 0 ? NEXT(write)(file, pieces->iov_base, std::min(pieces->iov_len, ShortSize))
                                           : -1;
    }
}
