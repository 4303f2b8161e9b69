// Whether Deflate data is whole and sound. libtiff stops decoding once a strip's or tile's rows are complete: it never looks
// at the checksum after them, and of data that was cut or damaged it may deliver other pixels without a word.
#pragma once

#include "rasterfeed/SeparationForm.h"

#include <cstddef>
#include <cstdint>

namespace RasterFeed
{
    class TiffFile;

    /// Checks the chunks of one image as they are decoded: (Take* Finish)*.
    class DeflateCheck
    {
    public:
        /// `tiff` must live longer.
        DeflateCheck(TiffFile& tiff, const SeparationForm& imageForm);

        /// Takes whole rows of a chunk as libtiff delivered them, from its first row on.
        void Take(const unsigned char* rows, std::uint64_t bytes);

        /// Throws Refusal unless the rows taken since the last call are what strip or tile `chunk` holds, and what the
        /// callbacks throw.
        void Finish(std::uint32_t chunk);

    private:
        void TakeRow(const unsigned char* row, std::size_t bytes);
        bool EndsInChecksum(std::uint64_t end);
        bool InflatesWhole(std::uint64_t begin, std::uint64_t end);

        TiffFile& file;
        SeparationForm form;
        std::uint32_t checksum;  ///< Adler-32 of the rows as they were before they were compressed
        std::uint64_t taken = 0; ///< bytes
    };
}
