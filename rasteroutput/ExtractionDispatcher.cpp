// The process's table of parameter handlers.
#include "rasteroutput/ExtractionDispatcher.h"

#include "rasteroutput/ClientParameterExtractor.h"
#include "rasteroutput/ProcessWide.h"
#include "rasteroutput/Processor.h"

namespace RasterOutput
{
    ExtractionDispatcher& ExtractionDispatcher::Instance()
    {
        return ProcessWide<ExtractionDispatcher>();
    }

    void ExtractionDispatcher::Go(Processor& processor, ClientParameterExtractor& extractor)
    {
        entries.Go(processor, extractor);
    }
}
