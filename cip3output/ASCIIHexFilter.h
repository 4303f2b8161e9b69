// Encoding of preview data as hexadecimal digits, as the PostScript filter ASCIIHexDecode reads it back.
#pragma once

#include "cip3output/FilterOutput.h"

#include <cstddef>

namespace RasterOutput
{
    /// Encodes each range by itself, without blanks and line ends. Lives for one separation.
    class ASCIIHexFilter
    {
    public:
        /// The digits of `input`, in `output`: valid until the next call on this object. Reads `input` only. Throws
        /// std::length_error for 2 GiB and more, and std::bad_alloc.
        DataRef Filter(const DataRef& input);

        /// Bytes of room that FilterInto needs for an input of this size.
        std::size_t RoomFor(std::size_t inputSize) const noexcept { return 2 * inputSize; }

        /// As Filter, but into `room` of RoomFor(input.size()) bytes instead of `output`; gives the end of what it wrote.
        unsigned char* FilterInto(const DataRef& input, unsigned char* room) noexcept;

        /// Buffer for the last result of Filter.
        DataRefInstance output;
    };
}
