// Bytes from the file, with the two orders that TIFF allows them undone.
#include "rasterfeed/StoredRows.h"

#include "rasterfeed/ChunkDecoding.h"
#include "rasterfeed/SourceFile.h"
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
        const std::uint64_t strip = file.ChunkOffset(form.ChunkOf(row / form.chunkHeight));
        const std::uint64_t position = strip + std::uint64_t{row % form.chunkHeight} * rowBytes;
        const bool isSwapped = form.bits == 16 && form.byteSwapped;
        if (!isSwapped && !form.lowestBitFirst)
        {
            const unsigned char* const inPlace = file.Source().Peek(position, rowBytes);
            if (inPlace != nullptr)
            {
                return inPlace;
            }
        }
        ReadStored(file, form, position, space, rowBytes);
        if (isSwapped)
        {
            for (std::size_t i = 0; i < rowBytes; i += 2)
            {
                std::swap(space[i], space[i + 1]);
            }
        }
        return space;
    }
}
