// JPEG pictures for the tests of previews that are compressed that way.
#pragma once

#include <string>

namespace PpfTest
{
    /// A picture whose samples all have one value, of 1 or 4 components.
    std::string FlatJpeg(unsigned width, unsigned height, unsigned components, unsigned char value, bool progressive);
}
