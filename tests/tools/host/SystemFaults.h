// Faults of the operating system below the room. The test program is linked so that the room's calls of the functions
// below come here first (--wrap); without an order they go on to the system.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace HostTest
{
    /// One order at a time: the n-th call of a function fails, is interrupted, or comes back short.
    class SystemFault
    {
    public:
        /// The `nth` call of `function` (from 1) from now on fails with `error`, the others do what they do. With EndOfFile
        /// a read finds that.
        static constexpr int EndOfFile = 0;
        SystemFault(const char* function, int error, int nth = 1);
        ~SystemFault();
        SystemFault(const SystemFault&) = delete;
        SystemFault& operator=(const SystemFault&) = delete;
    };

    /// Until the end of this object read and write give and take no more than `most` bytes at once, and every other call
    /// is interrupted.
    class Stutter
    {
    public:
        explicit Stutter(std::size_t most);
        ~Stutter();
        Stutter(const Stutter&) = delete;
        Stutter& operator=(const Stutter&) = delete;
    };

    /// The calls of fsync, renameat and openat since the last time that this was asked, in their order.
    std::vector<std::string> TakeCalls();
}
