// Concrete stages for tests: each supports as little as its test needs, so that the framework's own handlers do the rest.
#pragma once

#include "rasteroutput/ClientParameterExtractor.h"
#include "rasteroutput/ExtractionDispatcher.h"
#include "rasteroutput/Processor.h"

namespace RasterOutputTest
{
    /// Fills in what a stage must have, with nothing in it, and lets tests see the counters.
    class BareStage : public RasterOutput::Processor
    {
    public:
        using Processor::currentX;
        using Processor::currentY;
        using Processor::rowCount;
        using Processor::tileColumn;

    protected:
        void InitializeProcess() override {}
        void FinalizeProcess() override {}
        void AfterInitialize(const RasterOutput::ProcessorParameters&, RasterOutput::ClientParameterExtractor&) override
        {
        }
        void ReservedHook3(std::uint32_t) override {}
        void ReservedHook4(std::uint32_t) override {}
    };

    /// A client's parameters: one number.
    struct NumberExtractor : RasterOutput::ClientParameterExtractor
    {
        int number = 0;
    };

    /// Keeps a handler registered for as long as a test runs.
    template <class Stage, class Extractor>
    class HandlerScope
    {
    public:
        explicit HandlerScope(RasterOutput::ExtractionDispatcher::Handler handler)
        {
            RasterOutput::ExtractionDispatcher::Instance().Add<Stage, Extractor>(handler);
        }
        ~HandlerScope() { RasterOutput::ExtractionDispatcher::Instance().Remove<Stage, Extractor>(); }
        HandlerScope(const HandlerScope&) = delete;
        HandlerScope& operator=(const HandlerScope&) = delete;
    };
}
