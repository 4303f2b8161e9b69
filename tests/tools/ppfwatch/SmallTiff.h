// The smallest separations, as bytes: what the watcher's tests cut, damage and drop. By hand, so that every byte's place is
// known.
#pragma once

#include <string>

namespace PpfWatchTest
{
    enum class TiffForm
    {
        Little,
        Big,       ///< the most significant byte first
        BigOffsets ///< BigTIFF
    };

    /// A grey TIFF of 4 x 2 pixels of `value`, at 2 pixels per inch, in two strips whose data is the end of the file.
    std::string SmallTiff(unsigned char value = 0, TiffForm form = TiffForm::Little);
}
