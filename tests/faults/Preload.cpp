// Loaded into a program before all other libraries: its allocations and system calls come here, and the one that is ordered
// fails. main is run once for each byte on CommandDescriptor, each time in a process of its own, forked where the program is
// loaded and has done nothing yet; this costs a tenth of starting it anew. The process's wait status is the answer.
#include "tests/faults/Order.h"

#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstring>
#include <tuple>

#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{
    using FaultTest::CommandDescriptor;
    using FaultTest::Order;
    using FaultTest::OrderDescriptor;

    constexpr unsigned SecondsUntilHung = 20;

    /// The order, once main has begun.
    Order* order = nullptr;
    int (*programMain)(int, char**, char**) = nullptr;

    /// Counts a call; true if it is the one that is ordered.
    bool IsOrdered(const char* call)
    {
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
            order->frameCount = backtrace(order->frames, sizeof order->frames / sizeof *order->frames);
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
        if (!IsOrdered(call))
        {
            return {false, size};
        }
        return order->isShort ? Turn{false, (size + 1) / 2} : Turn{true, 0};
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
        auto* const shared =
            static_cast<Order*>(mmap(nullptr, sizeof(Order), PROT_READ | PROT_WRITE, MAP_SHARED, OrderDescriptor, 0));
        char command;
        while (read(CommandDescriptor, &command, 1) == 1)
        {
            const pid_t child = fork();
            if (child == 0)
            {
                close(CommandDescriptor);
                close(OrderDescriptor);
                alarm(SecondsUntilHung);
                order = shared;
                return programMain(argc, argv, environment);
            }
            int status = 0;
            waitpid(child, &status, 0);
            std::ignore = write(CommandDescriptor, &status, sizeof status);
        }
        _exit(0);
    }
}

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
        return IsOrdered("allocation") ? nullptr : __libc_malloc(size);
    }

    void* calloc(std::size_t count, std::size_t size)
    {
        return IsOrdered("allocation") ? nullptr : __libc_calloc(count, size);
    }

    void* realloc(void* memory, std::size_t size)
    {
        return IsOrdered("allocation") ? nullptr : __libc_realloc(memory, size);
    }

    void* memalign(std::size_t alignment, std::size_t size)
    {
        return IsOrdered("allocation") ? nullptr : __libc_memalign(alignment, size);
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

    int access(const char* path, int mode)
    {
        return IsOrdered("access") ? -1 : NEXT(access)(path, mode);
    }

    int close(int file)
    {
        const int result = NEXT(close)(file);
        return IsOrdered("close") ? -1 : result;
    }

    int fchmod(int file, mode_t mode)
    {
        return IsOrdered("fchmod") ? -1 : NEXT(fchmod)(file, mode);
    }

    int fchown(int file, uid_t user, gid_t group)
    {
        return IsOrdered("fchown") ? -1 : NEXT(fchown)(file, user, group);
    }

    int fcntl(int file, int command, ...)
    {
        va_list arguments;
        va_start(arguments, command);
        void* const argument = va_arg(arguments, void*);
        va_end(arguments);
        return IsOrdered("fcntl") ? -1 : NEXT(fcntl)(file, command, argument);
    }

    int fstat(int file, struct stat* status)
    {
        return IsOrdered("fstat") ? -1 : NEXT(fstat)(file, status);
    }

    // Nothing here outlives a power cut, and the disk is slow.
    int fsync(int)
    {
        return IsOrdered("fsync") ? -1 : 0;
    }

    int ftruncate(int file, off_t size)
    {
        return IsOrdered("ftruncate") ? -1 : NEXT(ftruncate)(file, size);
    }

    int getentropy(void* bytes, std::size_t size)
    {
        return IsOrdered("getentropy") ? -1 : NEXT(getentropy)(bytes, size);
    }

    off_t lseek(int file, off_t offset, int origin)
    {
        return IsOrdered("lseek") ? -1 : NEXT(lseek)(file, offset, origin);
    }

    int lstat(const char* path, struct stat* status)
    {
        return IsOrdered("lstat") ? -1 : NEXT(lstat)(path, status);
    }

    int mkdir(const char* path, mode_t mode)
    {
        return IsOrdered("mkdir") ? -1 : NEXT(mkdir)(path, mode);
    }

    void* mmap(void* address, std::size_t size, int protection, int flags, int file, off_t offset)
    {
        return IsOrdered("mmap") ? MAP_FAILED : NEXT(mmap)(address, size, protection, flags, file, offset);
    }

    int open(const char* path, int flags, ...)
    {
        va_list arguments;
        va_start(arguments, flags);
        const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
        va_end(arguments);
        return IsOrdered("open") ? -1 : NEXT(open)(path, flags, mode);
    }

    int openat(int folder, const char* path, int flags, ...)
    {
        va_list arguments;
        va_start(arguments, flags);
        const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(arguments, mode_t) : 0;
        va_end(arguments);
        return IsOrdered("openat") ? -1 : NEXT(openat)(folder, path, flags, mode);
    }

    ssize_t pread(int file, void* bytes, std::size_t size, off_t offset)
    {
        const Turn turn = TurnOf("pread", size);
        return turn.fails ? -1 : NEXT(pread)(file, bytes, turn.size, offset);
    }

    ssize_t read(int file, void* bytes, std::size_t size)
    {
        const Turn turn = TurnOf("read", size);
        return turn.fails ? -1 : NEXT(read)(file, bytes, turn.size);
    }

    int rename(const char* from, const char* to)
    {
        return IsOrdered("rename") ? -1 : NEXT(rename)(from, to);
    }

    int renameat(int fromFolder, const char* from, int toFolder, const char* to)
    {
        return IsOrdered("renameat") ? -1 : NEXT(renameat)(fromFolder, from, toFolder, to);
    }

    int stat(const char* path, struct stat* status)
    {
        return IsOrdered("stat") ? -1 : NEXT(stat)(path, status);
    }

    ssize_t write(int file, const void* bytes, std::size_t size)
    {
        const Turn turn = TurnOf("write", size);
        return turn.fails ? -1 : NEXT(write)(file, bytes, turn.size);
    }

    ssize_t writev(int file, const iovec* pieces, int count)
    {
        if (!IsOrdered("writev"))
        {
            return NEXT(writev)(file, pieces, count);
        }
        return order->isShort && count > 0 ? NEXT(write)(file, pieces->iov_base, (pieces->iov_len + 1) / 2) : -1;
    }
}
