// The library's side of a conversion: the job as host values, and the calls in their order.
#pragma once

#include "tiff2ppf/Job.h"

#include <stdexcept>
#include <string>

namespace Tiff2Ppf
{
    /// What the library reported, in its own words.
    class LibraryFailure : public std::runtime_error
    {
    public:
        using std::runtime_error::runtime_error;
    };

    /// Has the library write `job` to the file `path`, absolute; missing folders are made. Throws LibraryFailure, and
    /// the file may then be there, empty.
    void RunLibrary(const Job& job, const std::string& path);
}
