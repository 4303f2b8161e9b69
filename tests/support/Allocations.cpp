// malloc and its kin for the whole test program, in place of the system's, which do the work. The dynamic linker gives these
// to the shared libraries too. Under the address sanitizer the system's are the sanitizer's own.
#include "tests/support/Allocations.h"

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

#ifdef SANITIZER_ALLOCATES
#define SYSTEM(name) __interceptor_##name
#else
#define SYSTEM(name) __libc_##name
#endif

extern "C"
{
    void* SYSTEM(malloc)(std::size_t size);
    void* SYSTEM(calloc)(std::size_t count, std::size_t size);
    void* SYSTEM(realloc)(void* memory, std::size_t size);
    void* SYSTEM(memalign)(std::size_t alignment, std::size_t size);
    void SYSTEM(free)(void* memory);
}

namespace TestSupport
{
    namespace
    {
        constexpr long Never = std::numeric_limits<long>::max();

        std::atomic<long> count = 0;
        std::atomic<long> live = 0;
        std::atomic<long> firstFailing = Never;
        std::atomic<long> lastFailing = Never;

        void Order(long first, long last)
        {
            count = 0;
            firstFailing = first;
            lastFailing = last;
        }

        /// Counts an allocation; true if it is to fail, with errno set.
        bool Fails()
        {
            const long number = ++count;
            if (number < firstFailing || number > lastFailing)
            {
                return false;
            }
            errno = ENOMEM;
            return true;
        }

        void* Counted(void* memory)
        {
            live += memory != nullptr ? 1 : 0;
            return memory;
        }

        void* Required(void* memory)
        {
            if (memory == nullptr)
            {
                throw std::bad_alloc();
            }
            return memory;
        }
    }

    void AllowAllocations()
    {
        Order(Never, Never);
    }

    void FailOneAllocation(long number)
    {
        Order(number, number);
    }

    void FailAllocationsFrom(long number)
    {
        Order(number, Never);
    }

    long AllocationCount()
    {
        return count;
    }

    bool AllocationHasFailed()
    {
        return count >= firstFailing;
    }

    long LiveBlocks()
    {
        return live;
    }
}

using TestSupport::Counted;
using TestSupport::Fails;
using TestSupport::Required;

extern "C"
{
    void* malloc(std::size_t size)
    {
        return Fails() ? nullptr : Counted(SYSTEM(malloc)(size));
    }

    void* calloc(std::size_t count, std::size_t size)
    {
        return Fails() ? nullptr : Counted(SYSTEM(calloc)(count, size));
    }

    void* realloc(void* memory, std::size_t size)
    {
        if (Fails())
        {
            return nullptr;
        }
        void* const moved = SYSTEM(realloc)(memory, size);
        return memory == nullptr ? Counted(moved) : moved;
    }

    void* memalign(std::size_t alignment, std::size_t size)
    {
        return Fails() ? nullptr : Counted(SYSTEM(memalign)(alignment, size));
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

    void free(void* memory)
    {
        TestSupport::live -= memory != nullptr ? 1 : 0;
        SYSTEM(free)(memory);
    }
}

void* operator new(std::size_t size)
{
    return Required(malloc(size));
}
void* operator new[](std::size_t size)
{
    return Required(malloc(size));
}
void* operator new(std::size_t size, std::align_val_t alignment)
{
    return Required(memalign(static_cast<std::size_t>(alignment), size));
}
void* operator new[](std::size_t size, std::align_val_t alignment)
{
    return Required(memalign(static_cast<std::size_t>(alignment), size));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return malloc(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return malloc(size);
}
void operator delete(void* memory) noexcept
{
    free(memory);
}
void operator delete[](void* memory) noexcept
{
    free(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept
{
    free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept
{
    free(memory);
}
void operator delete[](void* memory, std::align_val_t) noexcept
{
    free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept
{
    free(memory);
}
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept
{
    free(memory);
}
