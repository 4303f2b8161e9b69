// Encoding of preview data in base 85, as the PostScript filter ASCII85Decode reads it back.
#pragma once

#include "cip3output/FilterOutput.h"
#include "cip3output/PpfFormat.h"

#include <array>
#include <cstdint>

namespace RasterOutput
{
    /// Encodes ranges as one stream: a group of four bytes may begin in one call and end in a later one. Makes no line
    /// ends. Lives for one separation: Filter* Finish.
    class ASCII85Filter
    {
    public:
        /// The characters of all groups that `input` completes: valid until the next call on this object. Reads `input`
        /// only. Throws std::length_error for 2 GiB and more, std::bad_alloc, and then has taken nothing.
        DataRef Filter(const DataRef& input);

        /// The characters of the incomplete group, one more than it has bytes, if there is one, and the end of the data.
        /// Valid as the result of Filter is. Throws std::bad_alloc.
        DataRef Finish();

    private:
        /// Bytes of the group that is not yet complete, first byte first.
        std::array<unsigned char, PpfFormat::ASCII85GroupSize> group{};
        /// How many bytes of `group` are valid: 0 to 3.
        std::uint32_t count = 0;
        /// Holds the last result; grows to twice the largest input, or to what the completed groups need.
        DataRefInstance output;
    };
}
