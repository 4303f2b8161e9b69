// Encoding of preview data in base 85, as the PostScript filter ASCII85Decode reads it back.
#pragma once

#include "cip3output/FilterOutput.h"
#include "cip3output/PpfFormat.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace RasterOutput
{
    /// Encodes ranges as one stream: a group of four bytes may begin in one call and end in a later one. Makes no line
    /// ends. Lives for one separation: Filter* FinishInto.
    class ASCII85Filter
    {
    public:
        /// The characters of all groups that `input` completes, in `output`: valid until the next call on this object.
        /// Reads `input` only. Throws std::length_error for 2 GiB and more, std::bad_alloc, and then has taken nothing.
        DataRef Filter(const DataRef& input);

        /// Bytes of room that FilterInto needs for an input of this size.
        std::size_t RoomFor(std::size_t inputSize) const noexcept;

        /// As Filter, but into `room` of RoomFor(input.size()) bytes instead of `output`; gives the end of what it wrote.
        unsigned char* FilterInto(const DataRef& input, unsigned char* room) noexcept;

        /// The characters of the incomplete group, in `output`: none if there is none, and one more than it has bytes
        /// otherwise. The filter is then empty. Valid as the result of Filter is. Throws std::bad_alloc.
        DataRef Finish();

        /// Bytes of the group that is not yet complete, first byte first.
        std::array<unsigned char, PpfFormat::ASCII85GroupSize> group{};
        /// How many bytes of `group` are valid: 0 to 3.
        std::uint32_t count = 0;
        /// Buffer for the last result of Filter.
        DataRefInstance output;
    };
}
