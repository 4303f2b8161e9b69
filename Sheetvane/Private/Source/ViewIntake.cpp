#include "frontend/ViewIntake.h"

#include "frontend/ConverterImpl.h"
#include "frontend/Failure.h"
#include "frontend/FailureTexts.h"

#include <cmath>

namespace Sheetvane
{
    namespace
    {
        constexpr unsigned int MostThreads = 256;

        bool IsResolution(double pixelsPerInch)
        {
            return std::isfinite(pixelsPerInch) && pixelsPerInch >= 0;
        }
    }

    void SetPreviewResolution(ConverterImpl& job, double pixelsPerInch, double onlyAbove)
    {
        if (!IsResolution(pixelsPerInch) || !IsResolution(onlyAbove))
        {
            ThrowFailure(FailureText::InvalidPreviewResolution, __LINE__);
        }
        job.view.resolution = pixelsPerInch;
        job.view.reduceAbove = onlyAbove;
    }

    void SetInputResolution(ConverterImpl& job, double pixelsPerInch)
    {
        if (!IsResolution(pixelsPerInch))
        {
            ThrowFailure(FailureText::InvalidInputResolution, __LINE__);
        }
        job.view.inputResolution = pixelsPerInch;
    }

    void SetOrientation(
        ConverterImpl& job, unsigned int sheetIndex, SheetvaneConverter::Side side,
        SheetvaneConverter::Orientation orientation)
    {
        if (sheetIndex >= job.sheets.size())
        {
            ThrowFailure(FailureText::SheetIndexOutOfBounds, __LINE__);
        }
        const bool isSide = side == SheetvaneConverter::FrontSide || side == SheetvaneConverter::BackSide;
        if (!isSide || orientation < SheetvaneConverter::Rotate0 || orientation > SheetvaneConverter::Flip270)
        {
            ThrowFailure(FailureText::InvalidOrientation, __LINE__);
        }
        SheetRecord& sheet = job.sheets[sheetIndex];
        (side == SheetvaneConverter::FrontSide ? sheet.frontOrientation : sheet.backOrientation) =
            static_cast<RasterFeedOrientation>(orientation); // the same eight in the same order
    }

    void SetThreads(ConverterImpl& job, unsigned int count)
    {
        if (count < 1 || count > MostThreads)
        {
            ThrowFailure(FailureText::InvalidThreads, __LINE__);
        }
        job.threads = count;
    }
}
