// One decoded strip at a time.
#include "StripRows.h"

#include "ChunkDecoding.h"

StripRows::StripRows(TiffFile& tiff, const SeparationForm& imageForm, std::size_t blockBytes)
    : file(tiff)
    , form(imageForm)
    , block(new unsigned char[blockBytes])
{
}

const unsigned char* StripRows::Row(std::uint32_t row, unsigned char*)
{
    const std::uint32_t strip = row / form.chunkHeight;
    if (present != strip)
    {
        present.reset();
        DecodeStrip(file, strip, block.get(), form.RowBytes() * form.RowsOf(strip));
        present = strip;
    }
    return block.get() + row % form.chunkHeight * form.RowBytes();
}
