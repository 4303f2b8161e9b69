// ASCIIHex encoding of one range.
#include "cip3output/ASCIIHexFilter.h"

#include "cip3output/kernels/ASCIIHex.h"

namespace RasterOutput
{
    DataRef ASCIIHexFilter::Filter(const DataRef& input)
    {
        GrowFilterOutput(output, input.size(), RoomFor(input.size()));
        return FilledPart(output, FilterInto(input, output.begin));
    }

    unsigned char* ASCIIHexFilter::FilterInto(const DataRef& input, unsigned char* room) noexcept
    {
        return Kernels::EncodeASCIIHex(input.begin, input.size(), room);
    }
}
