// Image data by lines, strips or tiles, as libtiff decodes it, and as it is stored. Each step makes sure that no damage is
// passed over which libtiff would bridge with pixels of its own.
#pragma once

#include "rasterfeed/SeparationForm.h"

#include <cstddef>
#include <cstdint>

namespace RasterFeed
{
    class TiffFile;

    /// Decode into `to`, which has the bytes of a row, of a strip's rows, or of a tile. Throw Refusal if libtiff fails or
    /// complains, and what the callbacks throw.
    void DecodeScanline(TiffFile& file, std::uint32_t row, unsigned plane, unsigned char* to);
    void DecodeStrip(TiffFile& file, std::uint32_t strip, unsigned char* to, std::uint64_t bytes);
    void DecodeTile(TiffFile& file, std::uint32_t tile, unsigned char* to, std::uint64_t bytes);

    /// Reads image data as it is stored at `position`, except for the order of the bits in a byte. Throws Refusal if the file
    /// ends before it, and what the callbacks throw.
    void ReadStored(
        TiffFile& file, const SeparationForm& form, std::uint64_t position, unsigned char* to, std::size_t bytes);
}
