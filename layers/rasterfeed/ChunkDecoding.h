// Decoding by libtiff, by lines, strips or tiles: each step makes sure that no damage is passed over which libtiff would bridge
// with pixels of its own.
#pragma once

#include <cstdint>

class TiffFile;

/// Decode into `to`, which has the bytes of a row, of a strip's rows, or of a tile. Throw Refusal if libtiff fails or
/// complains, and what the callbacks throw.
void DecodeScanline(TiffFile& file, std::uint32_t row, unsigned char* to);
void DecodeStrip(TiffFile& file, std::uint32_t strip, unsigned char* to, std::uint64_t bytes);
void DecodeTile(TiffFile& file, std::uint32_t tile, unsigned char* to, std::uint64_t bytes);
