// Memory as a test has it: counts allocations, and lets one of them, or all from one on, fail.
#pragma once

#include <cstddef>

namespace SheetvaneTest
{
    /// Calls of operator new so far, in the whole process.
    std::size_t Allocations();

    enum class Failing
    {
        Alone,    ///< one allocation fails
        Lastingly ///< so do all after it
    };

    /// The `count`-th allocation from now on, counted from 1, throws std::bad_alloc. 0: none does.
    void FailAllocation(std::size_t count, Failing how = Failing::Alone);

    /// Whether an allocation has failed since it was last said which one is to.
    bool AllocationFailed();

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
