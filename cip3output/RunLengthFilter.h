// Run-length compression of preview data, as the PostScript filter RunLengthDecode reads it back.
#pragma once

#include "cip3output/FilterOutput.h"

namespace RasterOutput
{
    /// Compresses each range by itself: no run crosses from one call to the next. Lives for one separation:
    /// Filter* Finish.
    class RunLengthFilter
    {
    public:
        /// The tokens of `input`: valid until the next call on this object. Reads `input` only. Throws std::length_error
        /// for 2 GiB and more, and std::bad_alloc.
        DataRef Filter(const DataRef& input);

        /// The end of the data. Valid as the result of Filter is. Throws std::bad_alloc.
        DataRef Finish();

    private:
        /// Holds the last result; grows to twice the largest input, which always suffices.
        DataRefInstance output;
    };
}
