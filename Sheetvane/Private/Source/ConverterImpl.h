// The job of a converter: its sheets and its choices. The operations on it have a file each: SheetIntake,
// ParameterIntake, ConversionDriver.
#pragma once

#include "cip3output/CIP3PainterParameters.h"
#include "cip3output/CIP3SurfaceParameters.h"
#include "frontend/Registrations.h"
#include "frontend/SheetRecord.h"
#include "rasteroutput/ProcessorParameters.h"

#include <RasterFeedLib.h>

#include <vector>

namespace Sheetvane
{
    /// While it lives, the painter is registered, so that there is one in a process at a time.
    class ConverterImpl
    {
    public:
        /// An empty job with all defaults. Throws RasterOutput::Exception while another one lives.
        ConverterImpl();
        ~ConverterImpl();

        std::vector<SheetRecord> sheets; ///< in the order of AddSheet; a sheet's index is its position

        /// The raster that the painter is told about; a conversion overwrites its sizes and resolutions, sheet by sheet.
        RasterOutput::ProcessorParameters processorParameters;
        RasterOutput::CIP3PainterParameters painterParameters; ///< a conversion sets path and sheet count
        RasterOutput::CIP3SurfaceParameters surfaceTemplate;   ///< what a conversion's surface record begins as

        /// What is read of each file, but for its orientation, which is its sheet's and side's.
        RasterFeedSelection view;
        unsigned int threads = 1; ///< that read separations where they are reduced

    private:
        PainterRegistration painter;
        ExtractionRegistration extraction;
    };
}
