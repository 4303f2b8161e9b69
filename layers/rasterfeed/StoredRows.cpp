// Bytes from the file, with the two orders that TIFF allows them undone.
#include "StoredRows.h"

#include "Refusal.h"
#include "SourceFile.h"
#include "TiffFile.h"

#include <utility>

StoredRows::StoredRows(TiffFile& tiff, const SeparationForm& imageForm)
    : file(tiff)
    , form(imageForm)
    , rowBytes(static_cast<std::size_t>(form.RowBytes()))
{
}

const unsigned char* StoredRows::Row(std::uint32_t row, unsigned char* room)
{
    const std::uint64_t strip = file.ChunkOffset(row / form.chunkHeight);
    if (file.Source().Read(strip + std::uint64_t{row % form.chunkHeight} * rowBytes, room, rowBytes) != rowBytes)
        throw Refusal("a file that was cut short while it was read; image data that is all there is needed");
    if (form.lowestBitFirst)
        TIFFReverseBits(room, static_cast<tmsize_t>(rowBytes));
    if (form.bits == 16 && form.byteSwapped)
    {
        for (std::size_t i = 0; i < rowBytes; i += 2)
            std::swap(room[i], room[i + 1]);
    }
    return room;
}
