#include "ppfwatch/Stamp.h"

#include <algorithm>
#include <array>
#include <cerrno>

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
        if (fstatat(folder, path.c_str(), &status, 0) != 0)
        {
            constexpr std::array<int, 5> Answers = {ENOENT, ENOTDIR, EACCES, ELOOP, ENAMETOOLONG};
            const bool isAnswer = std::find(Answers.begin(), Answers.end(), errno) != Answers.end();
            return isAnswer ? std::nullopt : std::optional(Stamp{0, 0, 0, true});
        }
        if (!S_ISREG(status.st_mode))
        {
            return std::nullopt;
        }
        return Stamp{
            static_cast<std::uint64_t>(status.st_size), Nanoseconds(status.st_mtim), Nanoseconds(status.st_ctim)};
    }
}
