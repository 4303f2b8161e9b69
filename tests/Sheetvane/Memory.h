// Memory as a test has it: counts allocations, and lets one of them fail.
#pragma once

#include <cstddef>

namespace SheetvaneTest
{
    /// Calls of operator new so far, in the whole process.
    std::size_t Allocations();

    /// The `count`-th allocation from now on, counted from 1, throws std::bad_alloc, once. 0: none does.
    void FailAllocation(std::size_t count);

    /// No allocation fails or counts while it lives: for what a test does in the middle of the code under test.
    class OutsideTheCount
    {
    public:
        OutsideTheCount();
        ~OutsideTheCount();
        OutsideTheCount(const OutsideTheCount&) = delete;
        OutsideTheCount& operator=(const OutsideTheCount&) = delete;

    private:
        std::size_t allocationsBefore;
        std::size_t untilFailureBefore;
    };
}
