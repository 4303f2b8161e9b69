// libtiff keeps the place in the strip.
#include "rasterfeed/ScanlineRows.h"

#include "rasterfeed/ChunkDecoding.h"

namespace RasterFeed
{
    ScanlineRows::ScanlineRows(TiffFile& tiff, const SeparationForm& imageForm)
        : file(tiff)
        , form(imageForm)
    {
        if (form.IsDeflate())
        {
            check.emplace(file, form);
        }
    }

    const unsigned char* ScanlineRows::Row(std::uint32_t row, unsigned char* space)
    {
        DecodeScanline(file, row, form.plane, space);
        if (check)
        {
            check->Take(space, form.RowBytes());
            if ((row + 1) % form.chunkHeight == 0 || row + 1 == form.height)
            {
                check->Finish(form.ChunkOf(row / form.chunkHeight));
            }
        }
        return space;
    }
}
