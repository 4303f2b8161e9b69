// Memory that runs out: chosen allocations of the process fail, by malloc and its kin as by operator new, so that those of
// C libraries are met too. They are counted from the order on; an order holds until the next.
#pragma once

namespace TestSupport
{
    void AllowAllocations();               ///< all succeed
    void FailOneAllocation(long number);   ///< the one of that number fails, from 1; all others succeed
    void FailAllocationsFrom(long number); ///< that one fails and all after it

    /// Allocations since the last order.
    long AllocationCount();

    /// True if the order has made an allocation fail by now.
    bool AllocationHasFailed();

    /// Blocks of memory that this process holds.
    long LiveBlocks();
}
