// Counts the program's allocations, and makes one of them fail. The blocks of a document ask for an alignment of their
// own and are counted apart.
#pragma once

#include <cstddef>

namespace CountingAllocator
{
    /// Allocations so far without, and with, an alignment of their own.
    std::size_t Count();
    std::size_t AlignedCount();

    /// Makes the n-th allocation of either kind from now on throw std::bad_alloc; 0 is the next one.
    void FailAfter(std::size_t n);

    /// Lets all allocations succeed again; true if the one that was to fail has failed.
    bool StopFailing();
}
