// What the driver of the sweep and the process under test share: which call is to fail and what came of it, or every call that
// there is. The memory lies in a file that the process has open as OrderDescriptor; it is told to run by a byte on
// CommandDescriptor.
#pragma once

#include <cstdint>

namespace FaultTest
{
    constexpr int OrderDescriptor = 190;
    constexpr int CommandDescriptor = 191;
    constexpr int StackDescriptor = 192; ///< where the stack at the call that fails is written

    struct Order
    {
        char call[24];     ///< the name of a system call, or "allocation"; empty: nothing fails
        long number;       ///< which call of that name, from 1
        bool withAllAfter; ///< all later ones fail, too
        bool isShort;      ///< reading and writing take a few bytes instead of failing
        int error;         ///< errno of the failure
        bool isRecorded;   ///< nothing fails, and the calls are written down

        long count;       ///< calls of that name so far, or of any that are recorded
        bool hasHappened; ///< the call was reached
    };

    struct RecordedCall
    {
        char name[24];       ///< as in Order
        std::uint64_t stack; ///< stands for the stack at the call: the same for the same one
    };

    constexpr long MostRecorded = 30000;

    struct SharedMemory
    {
        Order order;
        RecordedCall calls[MostRecorded];
    };
}
