// The form of an image, and whether it is one of those that a separation may have. It stands apart as the one list of what
// is accepted: what passes here is decoded, what does not is refused with the reason.
#pragma once

#include "rasterfeed/Turn.h"

#include <cstdint>

namespace RasterFeed
{
    class TiffFile;

    /// How an accepted image is stored.
    struct SeparationForm
    {
        std::uint32_t width = 0;       ///< pixels, at least 1
        std::uint32_t height = 0;      ///< pixels, at least 1
        unsigned bits = 0;             ///< per sample: 1, 2, 4, 8 or 16
        unsigned samples = 1;          ///< of a pixel that are stored together: 1 where each has a plane of its own
        unsigned sample = 0;           ///< the separation's among those
        unsigned planes = 1;           ///< of samples, stored one after the other
        unsigned plane = 0;            ///< the separation's
        std::uint16_t compression = 0; ///< as libtiff numbers them
        bool inverted = false;         ///< the highest sample value is ink
        Turn upright;                  ///< what makes the stored image upright
        bool lowestBitFirst = false;   ///< FillOrder 2
        bool byteSwapped = false;      ///< 16-bit samples have the other byte order than the machine
        bool differences = false;      ///< predictor 2: samples are compressed as differences from the one before
        double resolution = 0;         ///< along stored rows, pixels per inch, above 0 and finite
        double resolutionDown = 0;     ///< across stored rows, likewise

        bool tiled = false;
        std::uint32_t chunkWidth = 0;  ///< columns of a strip (the image's width) or tile
        std::uint32_t chunkHeight = 0; ///< rows of a strip or tile, at most the image's height for strips

        /// Whether the compression is one of the CCITT's.
        bool IsFax() const;

        /// Whether it is Deflate, by either of its two numbers.
        bool IsDeflate() const;

        /// Bytes of a stored row: of the image, and of one strip or tile.
        std::uint64_t RowBytes() const { return (std::uint64_t{width} * samples * bits + 7) / 8; }
        std::uint64_t ChunkRowBytes() const { return (std::uint64_t{chunkWidth} * samples * bits + 7) / 8; }
        std::uint64_t ChunkBytes() const { return ChunkRowBytes() * chunkHeight; }

        std::uint32_t ChunksAcross() const { return (width - 1) / chunkWidth + 1; }
        std::uint32_t ChunksDown() const { return (height - 1) / chunkHeight + 1; }
        std::uint64_t ChunksOfPlane() const { return std::uint64_t{ChunksAcross()} * ChunksDown(); }

        /// The number by which the file has the strip or tile `index` of the separation's plane.
        std::uint32_t ChunkOf(std::uint32_t index) const
        {
            return static_cast<std::uint32_t>(plane * ChunksOfPlane() + index);
        }

        /// Rows of the image in the chunks that are `down` from the first.
        std::uint32_t RowsOf(std::uint32_t down) const
        {
            const std::uint32_t left = height - down * chunkHeight;
            return left < chunkHeight ? left : chunkHeight;
        }
    };

    /// The form of one channel of the image at which `file` stands, counted from 1; 0: of an image of a single one. Throws
    /// Refusal if a separation cannot have it.
    SeparationForm InspectForm(const TiffFile& file, std::uint32_t channel);
}
