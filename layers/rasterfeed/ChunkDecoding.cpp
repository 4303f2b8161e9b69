// Decoding by libtiff and what counts as its success, and reading without decoding.
#include "rasterfeed/ChunkDecoding.h"

#include "rasterfeed/Refusal.h"
#include "rasterfeed/SourceFile.h"
#include "rasterfeed/TiffFile.h"

#include <vector>

namespace RasterFeed
{
    namespace
    {
        // The CCITT RLE decoder looks two bytes ahead and, where the data ends within them, loses its place for the rows left.
        constexpr std::size_t RleLookAhead = 2;

        void ReadWhole(TiffFile& file, std::uint64_t position, unsigned char* to, std::size_t bytes)
        {
            if (file.Source().Read(position, to, bytes) != bytes)
            {
                throw Refusal("a file that was cut short while it was read; image data that is all there is needed");
            }
        }

        /// A warning counts as much as an error: where data is damaged or ends early the CCITT and JPEG decoders warn, fill in
        /// white or grey and report success.
        template <class Operation>
        void Decode(TiffFile& file, tmsize_t success, Operation operation)
        {
            const bool isJpeg = file.Compression() == COMPRESSION_JPEG;
            const tmsize_t result = isJpeg ? file.CallJpeg(operation) : file.Call(operation);
            if (result == success && file.Complaint().empty())
            {
                return;
            }
            const std::string why = file.Complaint().empty() ? "" : " (" + std::string(file.Complaint()) + ")";
            throw Refusal(
                "image data that ends early or cannot be decoded" + why + "; image data that is all there is needed");
        }

        /// A strip or tile of CCITT RLE, with zeros after its data, which stand for no code.
        void DecodeRle(TiffFile& file, std::uint32_t chunk, unsigned char* to, tmsize_t size)
        {
            const auto stored = static_cast<std::size_t>(file.ChunkBytes(chunk));
            std::vector<unsigned char> data(stored + RleLookAhead);
            ReadWhole(file, file.ChunkOffset(chunk), data.data(), stored);
            const auto length = static_cast<tmsize_t>(data.size());
            Decode(
                file, 1,
                [&](TIFF* tiff) { return TIFFReadFromUserBuffer(tiff, chunk, data.data(), length, to, size); });
        }
    }

    void DecodeScanline(TiffFile& file, std::uint32_t row, unsigned plane, unsigned char* to)
    {
        const auto sample = static_cast<std::uint16_t>(plane);
        Decode(file, 1, [&](TIFF* tiff) { return TIFFReadScanline(tiff, to, row, sample); });
    }

    void DecodeStrip(TiffFile& file, std::uint32_t strip, unsigned char* to, std::uint64_t bytes)
    {
        const auto size = static_cast<tmsize_t>(bytes);
        if (file.Compression() == COMPRESSION_CCITTRLE)
        {
            DecodeRle(file, strip, to, size);
            return;
        }
        Decode(file, size, [&](TIFF* tiff) { return TIFFReadEncodedStrip(tiff, strip, to, size); });
    }

    void DecodeTile(TiffFile& file, std::uint32_t tile, unsigned char* to, std::uint64_t bytes)
    {
        const auto size = static_cast<tmsize_t>(bytes);
        if (file.Compression() == COMPRESSION_CCITTRLE)
        {
            DecodeRle(file, tile, to, size);
            return;
        }
        Decode(file, size, [&](TIFF* tiff) { return TIFFReadEncodedTile(tiff, tile, to, size); });
    }

    void
    ReadStored(TiffFile& file, const SeparationForm& form, std::uint64_t position, unsigned char* to, std::size_t bytes)
    {
        ReadWhole(file, position, to, bytes);
        if (form.lowestBitFirst)
        {
            TIFFReverseBits(to, static_cast<tmsize_t>(bytes));
        }
    }
}
