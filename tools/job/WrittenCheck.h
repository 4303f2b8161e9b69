// The check of a file after it was written, by the reader that shares nothing with the writer. The library does not look
// whether its bytes arrive, nor whether a TIFF was another one when it was read than when it was looked at, so this does.
#pragma once

#include "job/Job.h"

#include <string>
#include <string_view>

namespace Jobs
{
    /// Whether each parameter of the job reads as one PostScript entry. The library writes a parameter's text as it
    /// comes, so a file may be just what was asked for and still make no sense to any reader.
    bool IsReadable(const Job& job);

    /// What is wrong with `file`, its bytes, as the outcome of `job`: a text with the byte it is about; empty if nothing is.
    /// All is read, the data of every preview has to make up its width and height, and sheets, sides and separations have to
    /// be those of the job. Of a job that is not readable, and with `mixedSizes`, only what the file begins and ends with, and
    /// its directory against its sections.
    std::string FindingInWrittenFile(std::string_view file, const Job& job, bool mixedSizes);
}
