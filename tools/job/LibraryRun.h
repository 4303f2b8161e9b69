// The library's side of a conversion: the job as host values, and the calls in their order.
#pragma once

#include "job/Job.h"

#include <stdexcept>
#include <string>

namespace Jobs
{
    /// What the library reported, in its own words.
    class LibraryFailure : public std::runtime_error
    {
    public:
        using std::runtime_error::runtime_error;
    };

    /// What it reports where the file cannot be opened, before it has read any separation.
    constexpr char LibraryCouldNotOpen[] = "Could not open CIP3 file";

    /// Has the library, with `threads` threads, from 1, write `job` to the file `path`, absolute and in a folder that is there. Throws LibraryFailure, and
    /// then the file is empty, and std::bad_alloc.
    void RunLibrary(const Job& job, const std::string& path, unsigned int threads = 1);
}
