// The output buffers of the preview filters: one rule for their size, and what is given back of them.
#pragma once

#include "rasteroutput/DataRef.h"

#include <cstddef>
#include <string_view>

namespace RasterOutput
{
    /// A range of bytes that passes from stage to stage.
    using DataRef = DataRef_Impl<DataRefTraits>;

    /// Makes `output` hold twice `inputSize` bytes, and `minimum` bytes at least; a buffer never shrinks. Throws
    /// std::length_error for more than a buffer can be, std::bad_alloc, and then leaves `output` as it was.
    void GrowFilterOutput(DataRefInstance& output, std::size_t inputSize, std::size_t minimum = 0);

    /// The part of `output` from its beginning up to `end`, as a filter returns it.
    DataRef FilledPart(const DataRefInstance& output, unsigned char* end);

    /// Copies `bytes` to `place`; gives the place after them.
    unsigned char* Put(std::string_view bytes, unsigned char* place);
}
