// Why a conversion failed. The library's texts name no file, so that the host looks at the files itself, with the reader
// that the library uses.
#pragma once

#include "job/Job.h"

#include <string>

namespace Jobs
{
    /// The separation that made the conversion of `job` fail, and why: its place, its file and the reason. All are read in the
    /// job's order up to the first that fails, which takes as long as the conversion did. If every file reads well, the
    /// text says what is left. Throws std::bad_alloc only.
    std::string CauseInSeparations(const Job& job);
}
