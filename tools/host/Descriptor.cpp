#include "host/Descriptor.h"

namespace Host
{
    bool WriteAll(int file, const char* bytes, std::size_t size) noexcept
    {
        while (size > 0)
        {
            const ssize_t written = Uninterrupted([&] { return write(file, bytes, size); });
            if (written < 0)
            {
                return false;
            }
            bytes += written;
            size -= static_cast<std::size_t>(written);
        }
        return true;
    }

    ssize_t ReadAll(int file, char* bytes, std::size_t size) noexcept
    {
        std::size_t got = 0;
        while (got < size)
        {
            const ssize_t next = Uninterrupted([&] { return read(file, bytes + got, size - got); });
            if (next < 0)
            {
                return -1;
            }
            if (next == 0)
            {
                break;
            }
            got += static_cast<std::size_t>(next);
        }
        return static_cast<ssize_t>(got);
    }
}
