#include "ScanlineRows.h"

#include "ChunkDecoding.h"

ScanlineRows::ScanlineRows(TiffFile& tiff)
    : file(tiff)
{
}

const unsigned char* ScanlineRows::Row(std::uint32_t row, unsigned char* room)
{
    DecodeScanline(file, row, room);
    return room;
}
