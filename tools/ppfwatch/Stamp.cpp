#include "ppfwatch/Stamp.h"

#include <sys/stat.h>

namespace PpfWatch
{
    namespace
    {
        std::int64_t Nanoseconds(const timespec& time)
        {
            constexpr std::int64_t PerSecond = 1000000000;
            return static_cast<std::int64_t>(time.tv_sec) * PerSecond + time.tv_nsec;
        }
    }

    std::optional<Stamp> StampOf(int folder, const std::string& path)
    {
        struct stat status = {};
        if (fstatat(folder, path.c_str(), &status, 0) != 0 || !S_ISREG(status.st_mode))
        {
            return std::nullopt;
        }
        return Stamp{
            static_cast<std::uint64_t>(status.st_size), Nanoseconds(status.st_mtim), Nanoseconds(status.st_ctim)};
    }
}
