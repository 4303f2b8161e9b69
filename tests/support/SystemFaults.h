// Faults of the operating system below the code under test. The program is linked so that its own calls of the functions
// listed in CMakeLists.txt come here first (--wrap); without an order they go on to the system.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace TestSupport
{
    /// An order that the `nth` call of `function` (from 1, counted from now on) fails with `error`; `times` calls, if more than
    /// that one. With EndOfFile a call that reads finds the end. close closes all the same. One order at a time; it ends with
    /// the object.
    class SystemFault
    {
    public:
        static constexpr int EndOfFile = 0;

        /// Throws std::invalid_argument if `function` is none of those that come here.
        SystemFault(const std::string& function, int error, int nth = 1, int times = 1);
        ~SystemFault();
        SystemFault(const SystemFault&) = delete;
        SystemFault& operator=(const SystemFault&) = delete;

        /// True if the first call that was to fail has failed.
        bool HasHappened() const;
    };

    /// As long as it lives, reading and writing take no more than `most` bytes at once, and every other call that a signal may
    /// interrupt is interrupted.
    class Stutter
    {
    public:
        explicit Stutter(std::size_t most);
        ~Stutter();
        Stutter(const Stutter&) = delete;
        Stutter& operator=(const Stutter&) = delete;
    };

    /// What was brought to the disk or renamed since the last time that this was asked, in its order: "fsync of a file",
    /// "fsync of a folder", "rename".
    std::vector<std::string> TakeCalls();

    /// Descriptors that this process has open.
    int OpenDescriptors();
}
