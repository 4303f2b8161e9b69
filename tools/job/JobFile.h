// The job file: a job as JSON. What it may hold is fixed to the last member, as a misspelt one that was let pass would
// be missing from the press.
#pragma once

#include "job/Job.h"

#include <string>
#include <string_view>

namespace Jobs
{
    /// The job that the JSON `text` holds; its relative file names stand relative to `folder`. Throws UsageError with the
    /// place in the text. The job is not checked as a whole: see CheckJob.
    Job ReadJob(std::string_view text, const std::string& folder);

    /// The job in the file `name`, or in standard input if the name is "-". Relative file names stand relative to the
    /// folder of the job file, or to the current folder if the job comes through standard input or another descriptor
    /// (a name under /dev or /proc). Throws UsageError with the job file's name; the job is checked.
    Job LoadJobFile(const std::string& name);
}
