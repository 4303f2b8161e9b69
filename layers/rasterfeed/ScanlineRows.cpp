// libtiff keeps the place in the strip.
#include "rasterfeed/ScanlineRows.h"

#include "rasterfeed/ChunkDecoding.h"

ScanlineRows::ScanlineRows(TiffFile& tiff, const SeparationForm& imageForm)
    : file(tiff)
    , form(imageForm)
{
    if (form.IsDeflate())
    {
        check.emplace(file, form);
    }
}

const unsigned char* ScanlineRows::Row(std::uint32_t row, unsigned char* room)
{
    DecodeScanline(file, row, room);
    if (check)
    {
        check->Take(room, form.RowBytes());
        if ((row + 1) % form.chunkHeight == 0 || row + 1 == form.height)
        {
            check->Finish(row / form.chunkHeight);
        }
    }
    return room;
}
