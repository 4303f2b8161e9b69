// File descriptors: their scoped owner, and reading and writing that a signal or a short count does not end early.
#pragma once

#include <cerrno>
#include <cstddef>
#include <utility>

#include <sys/types.h>
#include <unistd.h>

namespace Host
{
    class Descriptor
    {
    public:
        /// None.
        Descriptor() = default;

        /// Takes over `number`; a negative one is none.
        explicit Descriptor(int theNumber)
            : number(theNumber)
        {
        }
        Descriptor(Descriptor&& other) noexcept
            : number(std::exchange(other.number, -1))
        {
        }
        Descriptor& operator=(Descriptor&& other) noexcept
        {
            std::swap(number, other.number);
            return *this;
        }
        ~Descriptor() { Close(); }

        bool IsOpen() const { return number >= 0; }
        int Number() const { return number; }

        /// Closes it now. False if what was written is lost, as some file systems find out only here; errno says why.
        bool Close() { return !IsOpen() || close(std::exchange(number, -1)) == 0; }

    private:
        int number = -1;
    };

    /// Repeats a system call for as long as signals interrupt it.
    template <class Call>
    auto Uninterrupted(Call call)
    {
        auto result = call();
        while (result == -1 && errno == EINTR)
        {
            result = call();
        }
        return result;
    }

    /// Writes all of `size` bytes at `bytes`. False on failure, and errno says why.
    bool WriteAll(int file, const char* bytes, std::size_t size) noexcept;

    /// Reads up to `size` bytes to `bytes`; fewer only at the end of the file. -1 on failure, and errno says why.
    ssize_t ReadAll(int file, char* bytes, std::size_t size) noexcept;
}
