// The program's operator new, in place of the library's.
#include "tests/Sheetvane/Memory.h"

#include <cstdlib>
#include <new>
#include <utility>

namespace
{
    std::size_t allocations = 0;
    std::size_t untilFailure = 0;
    SheetvaneTest::Failing failing = SheetvaneTest::Failing::Alone;
    bool failed = false;
}

namespace SheetvaneTest
{
    std::size_t Allocations()
    {
        return allocations;
    }

    void FailAllocation(std::size_t count, Failing how)
    {
        untilFailure = count;
        failing = how;
        failed = false;
    }

    bool AllocationFailed()
    {
        return failed;
    }

    OutsideTheCount::OutsideTheCount()
        : allocationsBefore(allocations)
        , untilFailureBefore(std::exchange(untilFailure, 0))
    {
    }

    OutsideTheCount::~OutsideTheCount()
    {
        allocations = allocationsBefore;
        untilFailure = untilFailureBefore;
    }
}

void* operator new(std::size_t size)
{
    ++allocations;
    if (untilFailure != 0 && --untilFailure == 0)
    {
        failed = true;
        untilFailure = failing == SheetvaneTest::Failing::Lastingly ? 1 : 0;
        throw std::bad_alloc();
    }
    if (void* const memory = std::malloc(size != 0 ? size : 1))
    {
        return memory;
    }
    throw std::bad_alloc();
}

// What is allocated by this one ends in the same operator delete.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    try
    {
        return operator new(size);
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
