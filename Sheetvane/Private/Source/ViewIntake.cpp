#include "frontend/ViewIntake.h"

#include "frontend/ConverterImpl.h"
#include "frontend/Failure.h"
#include "frontend/FailureTexts.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace Sheetvane
{
    namespace
    {
        constexpr unsigned int MostThreads = 256;

        SheetRecord& SheetAt(ConverterImpl& job, unsigned int index)
        {
            if (index >= job.sheets.size())
            {
                ThrowFailure(FailureText::SheetIndexOutOfBounds, __LINE__);
            }
            return job.sheets[index];
        }

        bool IsSide(SheetvaneConverter::Side side)
        {
            return side == SheetvaneConverter::FrontSide || side == SheetvaneConverter::BackSide;
        }

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
        SheetRecord& sheet = SheetAt(job, sheetIndex);
        if (!IsSide(side) || orientation < SheetvaneConverter::Rotate0 || orientation > SheetvaneConverter::Flip270)
        {
            ThrowFailure(FailureText::InvalidOrientation, __LINE__);
        }
        (side == SheetvaneConverter::FrontSide ? sheet.frontOrientation : sheet.backOrientation) =
            static_cast<RasterFeedOrientation>(orientation); // the same eight in the same order
    }

    void SetSeparationImage(
        ConverterImpl& job, unsigned int sheetIndex, SheetvaneConverter::Side side, unsigned int separationIndex,
        SeparationImage image)
    {
        SheetRecord& sheet = SheetAt(job, sheetIndex);
        const bool isFront = side == SheetvaneConverter::FrontSide;
        if (!IsSide(side) || separationIndex >= (isFront ? sheet.frontFilePaths : sheet.backFilePaths).size())
        {
            ThrowFailure(FailureText::SeparationIndexOutOfBounds, __LINE__);
        }
        if (image.page != 0 || image.channel != 0)
        {
            image = {std::max(image.page, 1U), std::max(image.channel, 1U)};
        }
        std::vector<SeparationImage>& images = isFront ? sheet.frontImages : sheet.backImages;
        if (images.size() <= separationIndex)
        {
            images.resize(std::size_t{separationIndex} + 1);
        }
        images[separationIndex] = image;
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
