// Pages as a job of sheets: which page is which side of which sheet, and what the sheets are called.
#pragma once

#include "job/Job.h"
#include "pdf2ppf/CommandLine.h"
#include "pdf2ppf/Rendering.h"

#include <iosfwd>
#include <vector>

namespace Pdf2Ppf
{
    /// The job that `line` makes of `pages`, which rise. With --duplex page 2n - 1 is the front of sheet n and page 2n its
    /// back, also where the other one is not there.
    Jobs::Job JobOf(const CommandLine& line, const std::vector<Page>& pages);

    /// Throws Host::Failure if front and back of a sheet differ in size, as the format has one size for both.
    void CheckSizes(const CommandLine& line, const std::vector<Page>& pages);

    /// Says a line per page to `messages`: sheet, side, from what to what it is reduced, inks. `job` is that of the pages.
    void
    SayPages(std::ostream& messages, const CommandLine& line, const std::vector<Page>& pages, const Jobs::Job& job);

    /// Throws Host::UsageError for what is wrong with any job that `line` makes, whatever the pages are: an empty job name,
    /// or one of a sheet that is too long.
    void CheckNames(const CommandLine& line);
}
