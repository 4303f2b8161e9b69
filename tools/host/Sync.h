// Bringing things to the disk, so that they outlive a power cut. Apart because file systems differ in what they can be
// asked.
#pragma once

namespace Host
{
    /// Brings the content of the open file to the disk. False on failure, and errno says why.
    bool SyncFile(int file) noexcept;

    /// Reserves the space on the disk for what has been written to the open file, if the file system can do that by itself: ext4
    /// writes a file that has none yet out to the disk as soon as it replaces another. A conversion that asks for nothing to be
    /// brought there would wait for it: with the same for its closing (Platform::OpenOutputFile), that of a photo takes 54 ms
    /// instead of 46, and that of a page of noise 45 instead of 36.
    void ReserveSpace(int file) noexcept;

    /// Brings the names in the folder `path`, looked up from the open folder `from` or AT_FDCWD, to the disk. False on
    /// failure, and errno says why.
    bool SyncFolder(int from, const char* path) noexcept;
}
