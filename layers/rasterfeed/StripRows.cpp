#include "rasterfeed/StripRows.h"

#include "rasterfeed/ChunkDecoding.h"

namespace RasterFeed
{
    StripRows::StripRows(TiffFile& tiff, const SeparationForm& imageForm, std::size_t blockBytes)
        : file(tiff)
        , form(imageForm)
        , block(new unsigned char[blockBytes])
    {
        if (form.IsDeflate())
        {
            check.emplace(file, form);
        }
    }

    const unsigned char* StripRows::Row(std::uint32_t row, unsigned char*)
    {
        const std::uint32_t strip = row / form.chunkHeight;
        if (present != strip)
        {
            present.reset();
            const std::uint64_t bytes = form.RowBytes() * form.RowsOf(strip);
            DecodeStrip(file, form.ChunkOf(strip), block.get(), bytes);
            if (check)
            {
                check->Take(block.get(), bytes);
                check->Finish(form.ChunkOf(strip));
            }
            present = strip;
        }
        return block.get() + row % form.chunkHeight * form.RowBytes();
    }
}
