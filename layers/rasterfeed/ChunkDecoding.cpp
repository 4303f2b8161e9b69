// Decoding by libtiff and what counts as its success, and reading without decoding.
#include "rasterfeed/ChunkDecoding.h"

#include "rasterfeed/Refusal.h"
#include "rasterfeed/SourceFile.h"
#include "rasterfeed/TiffFile.h"

namespace RasterFeed
{
    namespace
    {
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

    void
    ReadStored(TiffFile& file, const SeparationForm& form, std::uint64_t position, unsigned char* to, std::size_t bytes)
    {
        if (file.Source().Read(position, to, bytes) != bytes)
        {
            throw Refusal("a file that was cut short while it was read; image data that is all there is needed");
        }
        if (form.lowestBitFirst)
        {
            TIFFReverseBits(to, static_cast<tmsize_t>(bytes));
        }
    }
}
