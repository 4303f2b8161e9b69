// The check that a sheet's separations have one size. The format describes all of them by the first, so that a file with
// others is hardly of use to a reader.
#pragma once

#include "job/Job.h"

namespace Jobs
{
    /// Throws Host::Failure with the two files and their sizes if those of a sheet differ. A file that cannot be read
    /// is passed over here: the conversion reports it.
    void CheckSizes(const Job& job);
}
