// The process's table of parameter handlers.
#include "rasteroutput/ExtractionDispatcher.h"

#include "rasteroutput/ClientParameterExtractor.h"
#include "rasteroutput/ProcessWide.h"
#include "rasteroutput/Processor.h"

#include <stdexcept>

namespace RasterOutput
{
    ExtractionDispatcher& ExtractionDispatcher::Instance()
    {
        static ExtractionDispatcher dispatcher;
        return dispatcher;
    }

    void ExtractionDispatcher::Go(Processor& processor, ClientParameterExtractor& extractor)
    {
        LiveEntries().Go(processor, extractor);
    }

    ExtractionDispatcher::Table* ExtractionDispatcher::Entries()
    {
        return ProcessWide<Table>();
    }

    ExtractionDispatcher::Table& ExtractionDispatcher::LiveEntries()
    {
        Table* const entries = Entries();
        if (entries == nullptr)
        {
            throw std::logic_error("The table of parameter handlers was used after the process had destroyed it");
        }
        return *entries;
    }
}
