// The rows of an image as they are stored, whichever way that is. The interface stands apart so that the reader can ask for
// any row without knowing how it is found; one class for each DecodeWay does.
#pragma once

#include "rasterfeed/DecodePlan.h"
#include "rasterfeed/SeparationForm.h"

#include <cstdint>
#include <memory>

namespace RasterFeed
{
    class TiffFile;

    /// Gives the stored rows of one image.
    class RowSource
    {
    public:
        virtual ~RowSource() = default;

        /// Row `row`, counted from the first that is stored: packed samples, 16-bit ones in the machine's byte order. Rows are
        /// asked for in the order in which they are stored or, except for DecodeWay::Scanlines, in the opposite one.
        /// The result lies in `space`, which has a row's bytes, or in the source, where it stays until the next call.
        /// Throws Refusal for data that ends early or cannot be decoded, and what the callbacks throw.
        virtual const unsigned char* Row(std::uint32_t row, unsigned char* space) = 0;
    };

    /// The source for an image; `file` must live longer.
    std::unique_ptr<RowSource> MakeRowSource(TiffFile& file, const SeparationForm& form, const DecodePlan& plan);
}
