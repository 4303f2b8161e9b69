#include "tests/cip3output/CountingAllocator.h"

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <new>

namespace
{
    constexpr std::size_t Never = std::numeric_limits<std::size_t>::max();

    std::size_t count = 0;
    std::size_t alignedCount = 0;
    std::size_t left = Never;

    void* Checked(void* memory)
    {
        if (memory == nullptr)
        {
            throw std::bad_alloc();
        }
        return memory;
    }

    /// Passes the turn on, and fails if it is this allocation's.
    void TakeTurn()
    {
        if (left != Never && left-- == 0)
        {
            left = Never - 1;
            throw std::bad_alloc();
        }
    }
}

namespace CountingAllocator
{
    std::size_t Count()
    {
        return count;
    }
    std::size_t AlignedCount()
    {
        return alignedCount;
    }
    void FailAfter(std::size_t n)
    {
        left = n;
    }
    bool StopFailing()
    {
        const bool failed = left > Never / 2;
        left = Never;
        return failed;
    }
}

void* operator new(std::size_t size)
{
    TakeTurn();
    ++count;
    return Checked(std::malloc(size));
}

void* operator new(std::size_t size, std::align_val_t alignment)
{
    TakeTurn();
    ++alignedCount;
    const auto boundary = static_cast<std::size_t>(alignment);
    return Checked(std::aligned_alloc(boundary, (size + boundary - 1) / boundary * boundary));
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept
{
    std::free(memory);
}
