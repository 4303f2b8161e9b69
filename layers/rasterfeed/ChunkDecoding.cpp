#include "ChunkDecoding.h"

#include "GroupFourEnd.h"
#include "Refusal.h"
#include "SourceFile.h"
#include "TiffFile.h"

#include <algorithm>
#include <string>

namespace
{
    [[noreturn]] void RefuseData(const std::string& why)
    {
        throw Refusal(
            "image data that ends early or cannot be decoded" + (why.empty() ? "" : " (" + why + ")") +
            "; image data that is all there is needed");
    }

    /// A warning counts as much as an error: codecs warn of what they fill in.
    template <class Operation>
    void Decode(TiffFile& file, tmsize_t success, Operation operation)
    {
        if (file.Call(operation) != success || !file.Complaint().empty())
            RefuseData(file.Complaint());
    }
}

void BeginChunk(TiffFile& file, const SeparationForm& form, std::uint32_t chunk)
{
    if (form.compression != COMPRESSION_CCITTFAX4)
        return;
    const std::uint64_t bytes = file.ChunkBytes(chunk);
    unsigned char tail[groupFourTailBytes];
    const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(bytes, sizeof tail));
    const std::uint64_t position = file.ChunkOffset(chunk) + bytes - count;
    if (file.Source().Read(position, tail, count) != count)
        RefuseData("");
    if (const auto spoiled = SpoilGroupFourEnd(tail, count, form.lowestBitFirst))
        file.Overlay(position + spoiled->index, spoiled->value);
}

void DecodeScanline(TiffFile& file, std::uint32_t row, unsigned char* to)
{
    Decode(file, 1, [&](TIFF* tiff) { return TIFFReadScanline(tiff, to, row, 0); });
}

void DecodeStrip(TiffFile& file, std::uint32_t strip, unsigned char* to, std::uint64_t bytes)
{
    const auto size = static_cast<tmsize_t>(bytes);
    Decode(file, size, [&](TIFF* tiff) { return TIFFReadEncodedStrip(tiff, strip, to, size); });
}

void DecodeTile(TiffFile& file, std::uint32_t tile, unsigned char* to, std::uint64_t bytes)
{
    const auto size = static_cast<tmsize_t>(bytes);
    Decode(file, size, [&](TIFF* tiff) { return TIFFReadEncodedTile(tiff, tile, to, size); });
}
