// Carries a document's parameters through the framework to the painter. Both ends need the one class, because the
// framework finds the way between them by its exact type.
#pragma once

#include "cip3output/CIP3PainterParameters.h"
#include "rasteroutput/ClientParameterExtractor.h"

namespace Sheetvane
{
    /// Exists for the time of a painter's Initialize, as a local of the caller. RasterOutput::ApplyParameters reads it.
    class CIP3ParameterExtractor : public RasterOutput::ClientParameterExtractor
    {
    public:
        RasterOutput::CIP3PainterParameters painterParameters;
    };
}
