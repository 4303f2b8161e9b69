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

    void ReadAll(SourceFile& source, std::uint64_t position, unsigned char* to, std::size_t count)
    {
        if (source.Read(position, to, count) != count)
            RefuseData("the file was cut short while it was read");
    }

    /// Of the `bytes` at `offset` those up to the last that is not zero.
    std::uint64_t BytesUpToZeros(SourceFile& source, std::uint64_t offset, std::uint64_t bytes)
    {
        unsigned char piece[256];
        while (bytes > 0)
        {
            const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(bytes, sizeof piece));
            ReadAll(source, offset + bytes - count, piece, count);
            for (std::size_t i = count; i > 0; --i, --bytes)
            {
                if (piece[i - 1] != 0)
                    return bytes;
            }
        }
        return 0;
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
    const std::uint64_t offset = file.ChunkOffset(chunk);
    const std::uint64_t bytes = file.ChunkBytes(chunk);
    const std::uint64_t data = BytesUpToZeros(file.Source(), offset, bytes);
    const std::uint64_t from = data - std::min<std::uint64_t>(data, groupFourLastBytes);
    const auto count =
        static_cast<std::size_t>(std::min<std::uint64_t>(bytes - from, data - from + groupFourZerosBehind));
    unsigned char tail[groupFourLastBytes + groupFourZerosBehind];
    ReadAll(file.Source(), offset + from, tail, count);
    if (const auto spoiled = SpoilGroupFourEnd(tail, count, form.lowestBitFirst))
        file.Overlay(offset + from + spoiled->index, spoiled->value);
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
