#include "ScanlineRows.h"

#include "ChunkDecoding.h"

ScanlineRows::ScanlineRows(TiffFile& tiff, const SeparationForm& imageForm)
    : file(tiff)
    , form(imageForm)
{
}

const unsigned char* ScanlineRows::Row(std::uint32_t row, unsigned char* room)
{
    if (row % form.chunkHeight == 0)
        BeginChunk(file, form, row / form.chunkHeight);
    DecodeScanline(file, row, room);
    return room;
}
