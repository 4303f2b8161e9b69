// Bytes from the file, with the two orders that TIFF allows them undone.
#include "rasterfeed/StoredRows.h"

#include "rasterfeed/ChunkDecoding.h"
#include "rasterfeed/TiffFile.h"

#include <utility>

namespace RasterFeed
{
    StoredRows::StoredRows(TiffFile& tiff, const SeparationForm& imageForm)
        : file(tiff)
        , form(imageForm)
        , rowBytes(static_cast<std::size_t>(form.RowBytes()))
    {
    }

    const unsigned char* StoredRows::Row(std::uint32_t row, unsigned char* space)
    {
        const std::uint64_t strip = file.ChunkOffset(row / form.chunkHeight);
        ReadStored(file, form, strip + std::uint64_t{row % form.chunkHeight} * rowBytes, space, rowBytes);
        if (form.bits == 16 && form.byteSwapped)
        {
            for (std::size_t i = 0; i < rowBytes; i += 2)
            {
                std::swap(space[i], space[i + 1]);
            }
        }
        return space;
    }
}
