// operator new and delete for the whole test program.
#include "tests/layers/rasterfeed/AllocationFaults.h"

#include <cstdlib>
#include <new>

namespace
{
    int allowed = -1;
}

void AllowAllocations(int allocations)
{
    allowed = allocations;
}

void* operator new(std::size_t size)
{
    if (allowed == 0)
    {
        throw std::bad_alloc();
    }
    if (allowed > 0)
    {
        --allowed;
    }
    if (void* memory = std::malloc(size > 0 ? size : 1))
    {
        return memory;
    }
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return std::malloc(size > 0 ? size : 1);
}

void* operator new[](std::size_t size)
{
    return operator new(size);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}
