// The steps that decoding by libtiff has in common, whether by lines, strips or tiles: each makes sure that no damage is
// passed over which libtiff would bridge with pixels of its own.
#pragma once

#include "SeparationForm.h"

#include <cstdint>

class TiffFile;

/// Prepares strip or tile `chunk` for being decoded from its start.
void BeginChunk(TiffFile& file, const SeparationForm& form, std::uint32_t chunk);

/// Decode into `to`, which has the bytes of a row, a strip's rows or a tile. Throw Refusal if libtiff fails or complains,
/// and what the callbacks throw.
void DecodeScanline(TiffFile& file, std::uint32_t row, unsigned char* to);
void DecodeStrip(TiffFile& file, std::uint32_t strip, unsigned char* to, std::uint64_t bytes);
void DecodeTile(TiffFile& file, std::uint32_t tile, unsigned char* to, std::uint64_t bytes);
