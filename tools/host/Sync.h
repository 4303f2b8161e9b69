// Bringing things to the disk, so that they outlive a power cut. Apart because file systems differ in what they can be
// asked.
#pragma once

namespace Host
{
    /// Brings the content of the open file to the disk. False on failure, and errno says why.
    bool SyncFile(int file) noexcept;

    /// Brings the names in the folder `path`, looked up from the open folder `from` or AT_FDCWD, to the disk. False on
    /// failure, and errno says why.
    bool SyncFolder(int from, const char* path) noexcept;
}
