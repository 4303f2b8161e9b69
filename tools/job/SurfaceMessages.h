// What a person is told about the job's sides before they are converted.
#pragma once

#include "job/Job.h"

#include <iosfwd>

namespace Jobs
{
    /// A line for each side that has separations, with its size by the first of them:
    /// `sheet 1 "S1", front: 400 x 300 pixels at 50.8 per inch: Cyan, Black`, and where it is reduced
    /// `sheet 1 "S1", front: 34016 x 24567 pixels at 2400 per inch to 720 x 520 at 50.8: Cyan, Black`.
    void SaySurfaces(std::ostream& messages, const Job& job);

    /// A line about the first separation that is kept with more pixels per inch than a preview is made with, if there is one.
    void SayWhatIsKeptLarge(std::ostream& messages, const Job& job);
}
