// How the parameters of a sheet get into the job: the names that it needs, and any further entries of its section.
#pragma once

#include "frontend/SheetRecord.h"

#include <vector>

class KX_TDict;

namespace Sheetvane
{
    /// Replaces job name and sheet name, and sets the unit to inch. Throws KX_ECIP3Exception: SheetIndexOutOfBounds,
    /// and nothing has changed; InvalidRequiredParameters, and the names hold what was read before.
    void SetRequiredParameters(std::vector<SheetRecord>& sheets, unsigned int sheetIndex, const KX_TDict& parameters);

    /// Replaces the optional parameters. Throws KX_ECIP3Exception: SheetIndexOutOfBounds, and nothing has changed;
    /// InvalidOptionalParameters, and the entries read before are set.
    void SetOptionalParameters(std::vector<SheetRecord>& sheets, unsigned int sheetIndex, const KX_TDict& parameters);
}
