// The last stage of a pipeline, which makes a product of the raster.
#pragma once

#include "rasteroutput/Processor.h"

#include <cstdint>

namespace RasterOutput
{
    /// Abstract end stage. A concrete painter writes the two operations left open here, and the handlers for the raster
    /// that it takes. Order of calls and failures are those of Processor.
    class Painter : public Processor
    {
    public:
        ~Painter() override;

    protected:
        void InitializeProcess() override;
        void FinalizeProcess() override;
        void AfterInitialize(const ProcessorParameters& description, ClientParameterExtractor& extractor) override;
        void ReservedHook3(std::uint32_t value) override;
        void ReservedHook4(std::uint32_t value) override;

        /// Begins the product. The client's parameters and the description of the raster are in place.
        virtual void InitializePainter() = 0;
        /// Completes the product.
        virtual void FinalizePainter() = 0;
    };
}
