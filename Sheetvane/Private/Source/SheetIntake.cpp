// Host arrays are read inside a guard: whatever goes wrong in there is one failure to the host.
#include "frontend/SheetIntake.h"

#include "frontend/Failure.h"
#include "frontend/FailureTexts.h"
#include "frontend/HostValues.h"

namespace Sheetvane
{
    void AddSheet(
        std::vector<SheetRecord>& sheets, const KX_TArray& frontSeparationNames, const KX_TArray& frontFiles,
        const KX_TArray& backSeparationNames, const KX_TArray& backFiles)
    {
        sheets.emplace_back();
        SheetRecord& sheet = sheets.back();
        try
        {
            sheet.frontSeparationNames = NamesOf(frontSeparationNames);
            sheet.frontFilePaths = LocalPathsOf(frontFiles);
            sheet.backSeparationNames = NamesOf(backSeparationNames);
            sheet.backFilePaths = LocalPathsOf(backFiles);
        }
        catch (...)
        {
            ThrowFailure(FailureText::InvalidInputData, __LINE__);
        }

        if (sheet.frontFilePaths.empty() && sheet.backFilePaths.empty())
        {
            ThrowFailure(FailureText::NoInputFiles, __LINE__);
        }
        if (sheet.frontSeparationNames.size() != sheet.frontFilePaths.size() ||
            sheet.backSeparationNames.size() != sheet.backFilePaths.size())
        {
            ThrowFailure(FailureText::NamesDoNotMatchFiles, __LINE__);
        }
    }
}
