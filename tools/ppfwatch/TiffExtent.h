// Whether a TIFF is there to its end. This reads no more than the offsets and sizes of the file's directories, and by hand:
// a TIFF library says that a directory cannot be read, but not whether it is damaged or only not there yet, and it would
// meet every strange file inside the watcher's own process, which has to outlive them all.
#pragma once

#include <string>

namespace PpfWatch
{
    enum class TiffExtent
    {
        Whole,   ///< all directories can be read, and what they point at lies in the file
        Growing, ///< begins as a TIFF, but something lies beyond its end: it is still being copied
        NoTiff   ///< does not begin as a TIFF, has a directory that is none, or cannot be read
    };

    /// Looks at the file at `path`.
    TiffExtent ExtentOfTiff(const std::string& path);
}
