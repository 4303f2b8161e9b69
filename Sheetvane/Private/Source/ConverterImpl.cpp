// The defaults of a job.
#include "frontend/ConverterImpl.h"

namespace Sheetvane
{
    ConverterImpl::ConverterImpl()
    {
        processorParameters.width = 300;
        processorParameters.height = 300;
        processorParameters.xResolution = 72.0;
        processorParameters.yResolution = 72.0;
        processorParameters.bitsPerComponent = 8;
        processorParameters.planar = 1;

        painterParameters.sheetCount = 1;
        painterParameters.compression = RasterOutput::CIP3CompressionValue::RunLength;
        painterParameters.encoding = RasterOutput::CIP3EncodingValue::ASCII85;
    }

    ConverterImpl::~ConverterImpl() = default;
}
