// Files that hold several inks: what stands in a job for all of them becomes a separation for each.
#pragma once

#include "job/Job.h"

#include <string>

namespace Jobs
{
    /// What stands in a job for every ink of the file at `file`, an absolute path.
    Separation EveryInkOf(const std::string& file);

    /// `job` with the inks of each such file in its place. Throws Host::Failure with the place, the file and the reason for one
    /// whose inks cannot be told.
    Job WithInksOfFiles(Job job);
}
