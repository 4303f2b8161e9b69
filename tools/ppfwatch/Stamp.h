// What of a file is compared to see whether it has changed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace PpfWatch
{
    /// What tells that a file has changed. Its number is not part of it, as some network file systems make up a new one now
    /// and then.
    struct Stamp
    {
        std::uint64_t bytes = 0;
        std::int64_t modified = 0; ///< nanoseconds of the file system's clock, whole seconds on many a share
        std::int64_t changed = 0;  ///< likewise, of name and permissions too
        bool isUncertain = false;  ///< there may be a file, but it could not be looked at

        bool operator==(const Stamp& other) const { return HasContentOf(other) && changed == other.changed; }
        bool operator!=(const Stamp& other) const { return !(*this == other); }

        /// Whether at most names or permissions have changed.
        bool HasContentOf(const Stamp& other) const
        {
            return bytes == other.bytes && modified == other.modified && isUncertain == other.isUncertain;
        }
    };

    /// The stamp of the regular file at `path`, looked up from the open folder `folder` or AT_FDCWD; links are followed. None
    /// if there is no such file, or not for this user. An uncertain one if the system cannot say, as of a share that does
    /// not answer: a job must not go on without a file for that.
    std::optional<Stamp> StampOf(int folder, const std::string& path);
}
