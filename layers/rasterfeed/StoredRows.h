// Uncompressed strips: a row's bytes are at a known place of the file, and are read from there without libtiff's detour over
// a copy of the whole strip.
#pragma once

#include "rasterfeed/RowSource.h"

#include <cstddef>

namespace RasterFeed
{
    class StoredRows : public RowSource
    {
    public:
        StoredRows(TiffFile& file, const SeparationForm& form);

        const unsigned char* Row(std::uint32_t row, unsigned char* space) override;

    private:
        TiffFile& file;
        SeparationForm form;
        std::size_t rowBytes;
    };
}
