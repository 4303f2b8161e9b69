#include "cip3output/ASCIIHexFilter.h"

#include "cip3output/PpfFormat.h"
#include "cip3output/kernels/ASCIIHex.h"

namespace RasterOutput
{
    DataRef ASCIIHexFilter::Filter(const DataRef& input)
    {
        GrowFilterOutput(output, input.size());
        return FilledPart(output, Kernels::EncodeASCIIHex(input.begin, input.size(), output.begin));
    }

    DataRef ASCIIHexFilter::Finish()
    {
        GrowFilterOutput(output, 0, PpfFormat::EndOfASCIIHexData.size());
        return FilledPart(output, Put(PpfFormat::EndOfASCIIHexData, output.begin));
    }
}
