// Host arrays are read inside a guard: whatever goes wrong in there is one failure to the host.
#include "frontend/SheetIntake.h"

#include "frontend/Failure.h"
#include "frontend/FailureTexts.h"
#include "frontend/HostValues.h"

#include <cstddef>

namespace Sheetvane
{
    void AddSheet(
        std::vector<SheetRecord>& sheets, const KX_TArray& frontSeparationNames, const KX_TArray& frontFiles,
        const KX_TArray& backSeparationNames, const KX_TArray& backFiles)
    {
        const std::size_t index = sheets.size();
        sheets.emplace_back();
        try
        {
            // A host's array may add a sheet while it is read, and the job's sheets then move: each list is complete before
            // its place is looked up.
            std::vector<std::string> list = NamesOf(frontSeparationNames);
            sheets[index].frontSeparationNames.swap(list);
            list = LocalPathsOf(frontFiles);
            sheets[index].frontFilePaths.swap(list);
            list = NamesOf(backSeparationNames);
            sheets[index].backSeparationNames.swap(list);
            list = LocalPathsOf(backFiles);
            sheets[index].backFilePaths.swap(list);
        }
        catch (...)
        {
            ThrowFailure(FailureText::InvalidInputData, __LINE__);
        }

        const SheetRecord& sheet = sheets[index];
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
