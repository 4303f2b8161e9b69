// How a sheet gets into the job. Only the shapes of the host's arrays are judged: no file is opened, no name looked at.
#pragma once

#include "frontend/SheetRecord.h"

#include <vector>

class KX_TArray;

namespace Sheetvane
{
    /// Appends a sheet and fills it. Throws KX_ECIP3Exception, and then the sheet stays as far as it was filled:
    /// InvalidInputData, NoInputFiles, NamesDoNotMatchFiles. Throws std::bad_alloc if the list cannot grow, and then it
    /// is as before.
    void AddSheet(
        std::vector<SheetRecord>& sheets, const KX_TArray& frontSeparationNames, const KX_TArray& frontFiles,
        const KX_TArray& backSeparationNames, const KX_TArray& backFiles);
}
