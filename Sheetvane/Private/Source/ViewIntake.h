// How it gets into the job what is read of its files: which image, reduced to a resolution, turned, and by how
// many threads.
#pragma once

#include "frontend/SheetRecord.h"

#include <Sheetvane/SheetvaneConverter.h>

namespace Sheetvane
{
    class ConverterImpl;

    /// Each of these throws KX_ECIP3Exception with the text that its name says for a value that it does not take, and then
    /// nothing has changed; SetOrientation SheetIndexOutOfBounds and InvalidOrientation, SetSeparationImage
    /// SheetIndexOutOfBounds and SeparationIndexOutOfBounds, or std::bad_alloc.
    void SetPreviewResolution(ConverterImpl& job, double pixelsPerInch, double onlyAbove);
    void SetInputResolution(ConverterImpl& job, double pixelsPerInch);
    void SetOrientation(
        ConverterImpl& job, unsigned int sheetIndex, SheetvaneConverter::Side side,
        SheetvaneConverter::Orientation orientation);
    void SetSeparationImage(
        ConverterImpl& job, unsigned int sheetIndex, SheetvaneConverter::Side side, unsigned int separationIndex,
        SeparationImage image);
    void SetThreads(ConverterImpl& job, unsigned int count);
}
