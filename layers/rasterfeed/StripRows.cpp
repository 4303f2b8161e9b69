#include "StripRows.h"

#include "ChunkDecoding.h"
#include "TiffFile.h"

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
        Decode(strip);
        present = strip;
    }
    return block.get() + row % form.chunkHeight * form.RowBytes();
}

void StripRows::Decode(std::uint32_t strip)
{
    BeginChunk(file, form, strip);
    const std::uint32_t rows = form.RowsOf(strip);
    if (form.compression != COMPRESSION_CCITTFAX4)
    {
        DecodeStrip(file, strip, block.get(), form.RowBytes() * rows);
        return;
    }
    // Group 4 goes line by line: decoding a whole strip, libtiff is silent about an end mark in its middle.
    for (std::uint32_t row = 0; row < rows; ++row)
        DecodeScanline(file, strip * form.chunkHeight + row, block.get() + row * form.RowBytes());
}
