// libtiff keeps the place in the strip, so that there is nothing to keep here.
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
