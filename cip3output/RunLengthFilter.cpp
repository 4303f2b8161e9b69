#include "cip3output/RunLengthFilter.h"

#include "cip3output/PpfFormat.h"
#include "cip3output/kernels/RunLength.h"

namespace RasterOutput
{
    DataRef RunLengthFilter::Filter(const DataRef& input)
    {
        GrowFilterOutput(output, input.size());
        return FilledPart(output, Kernels::EncodeRunLength(input.begin, input.size(), output.begin));
    }

    DataRef RunLengthFilter::Finish()
    {
        GrowFilterOutput(output, 0, PpfFormat::EndOfRunLengthData.size());
        return FilledPart(output, Put(PpfFormat::EndOfRunLengthData, output.begin));
    }
}
