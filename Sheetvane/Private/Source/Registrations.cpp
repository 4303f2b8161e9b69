// Entries in the tables of the raster framework, which are process-wide.
#include "frontend/Registrations.h"

#include "cip3output/CIP3Painter.h"
#include "cip3output/CIP3ParameterExtractor.h"
#include "rasteroutput/ExtractionDispatcher.h"
#include "rasteroutput/PainterRegistry.h"

namespace Sheetvane
{
    namespace
    {
        RasterOutput::Painter* NewPainter()
        {
            return new RasterOutput::CIP3Painter;
        }
    }

    PainterRegistration::PainterRegistration()
    {
        RasterOutput::RegisterPainter(PainterIdentifier, &NewPainter);
    }

    PainterRegistration::~PainterRegistration()
    {
        RasterOutput::UnregisterPainter(PainterIdentifier);
    }

    ExtractionRegistration::ExtractionRegistration()
    {
        RasterOutput::ExtractionDispatcher::Instance().Add<RasterOutput::CIP3Painter, CIP3ParameterExtractor>(
            &RasterOutput::ApplyParameters);
    }

    ExtractionRegistration::~ExtractionRegistration()
    {
        RasterOutput::ExtractionDispatcher::Instance().Remove<RasterOutput::CIP3Painter, CIP3ParameterExtractor>();
    }
}
