// Moving a file so that a whole one is there at any moment, also where it goes to another file system.
#pragma once

#include <string>

namespace PpfWatch
{
    /// Moves the file `from` to `to`, whose folder is there. Across file systems it is copied to `part` first, a name on the
    /// file system of `to` that may be overwritten, with its permissions and time; `part` is on the disk before it becomes
    /// `to`, and `to` before `from` is unlinked. A file at `to` is not replaced. Throws Failure; then `from` is still there.
    void MoveFile(const std::string& from, const std::string& to, const std::string& part);

    /// Renames a file or folder unless there is something at `to`: then false, as when there is no such thing as `from`. errno
    /// says why, EEXIST for the former.
    bool RenameToNew(const std::string& from, const std::string& to) noexcept;

    /// Whether the two files hold the same bytes; not if one of them cannot be read.
    bool HoldSameBytes(const std::string& first, const std::string& second);

    /// Brings the names in `folder` to the disk. Throws Failure.
    void SyncNames(const std::string& folder);
}
