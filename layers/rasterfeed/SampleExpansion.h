// From packed samples to bytes: the one place that knows how a sample of any depth becomes 0 (full ink) to 255 (paper).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace RasterFeed
{
    /// The expansion of the rows of one image.
    class SampleExpansion
    {
    public:
        /// `bits` per sample: 1, 2, 4, 8 or 16. `inverted`: the file's highest value is ink. `mirrored`: lines run from
        /// right to left. `width`: samples of a row.
        SampleExpansion(unsigned bits, bool inverted, bool mirrored, std::size_t width);

        /// Whether a row takes as many bytes as its line, so that it may be decoded into the line and expanded in place.
        bool WorksInPlace() const { return bits == 8; }

        /// Turns `row`, samples packed from the highest bit down and 16-bit samples in the machine's byte order, into `line`,
        /// one byte for each sample. `row` may be `line` if WorksInPlace.
        void Expand(const unsigned char* row, unsigned char* line) const;

    private:
        template <unsigned SamplesPerByte>
        void Unpack(const unsigned char* row, unsigned char* line) const;

        unsigned bits;
        bool mirrored;
        std::size_t width;
        unsigned char flip;                                     ///< 255 to invert, else 0
        std::array<std::array<unsigned char, 8>, 256> expanded; ///< the bytes of a packed byte's samples, below 8 bits
    };
}
