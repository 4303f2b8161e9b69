// Which files a job file names. The watcher has to know them to see that all are there; whether the job file is right is
// for the program that converts it to say, so that this passes over what it does not understand.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace PpfWatch
{
    /// Names as they stand in the job file, relative to its folder or absolute; each once.
    struct JobFileNames
    {
        std::vector<std::string> files;
        std::vector<std::string> sets; ///< patterns with one * in the last component
    };

    /// Reads the job file at `path`. None if it cannot be read or is not JSON.
    std::optional<JobFileNames> NamesInJobFile(const std::string& path);
}
