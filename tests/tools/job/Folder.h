// A test's temporary folder with the little that these tests do in one.
#pragma once

#include "tests/support/Folder.h"

#include <string>

namespace JobsTest
{
    class Folder : public TestSupport::Folder
    {
    public:
        /// Makes an uncompressed 8-bit grey TIFF, every pixel `value`, at 2 pixels per inch; gives its path.
        std::string WriteTiff(const std::string& name, int width = 4, int height = 2, int value = 0) const;
    };
}
