// The check of a file after it was written. The library does not look whether its bytes arrive, so this does: the size,
// the directory against the sections, and the closing comment, held against the job. What a preview or an entry holds is
// not read again, so that the check of a large file costs next to nothing.
#pragma once

#include "job/Job.h"

#include <string>
#include <string_view>

namespace Jobs
{
    /// What is wrong with `file`, its bytes, as the outcome of `job`: a text with the byte it is about; empty if nothing is.
    std::string FaultOfWrittenFile(std::string_view file, const Job& job);
}
