// An open document: the file that it will be written to, and the document itself.
#pragma once

#include "cip3output/DocumentBuffer.h"

#include <fstream>

namespace RasterOutput
{
    /// Destroying it closes the file and discards the document.
    struct CIP3OutputFile
    {
        std::ofstream file;
        DocumentBuffer document;
    };
}
