// The written file through the eyes of the reader that shares nothing with the writer: nested sections, end marks of the
// previews, directory against sections, and as many sheets and separations as the job has. No pixel is decoded, so that
// this costs little beside the writing.
#pragma once

#include "job/Job.h"

#include <string>
#include <string_view>

namespace Jobs
{
    /// Whether each parameter of the job reads as one PostScript entry. The library writes a parameter's text as it
    /// comes, so a file may be just what was asked for and still make no sense to any reader.
    bool IsReadable(const Job& job);

    /// What the reader finds wrong with `file`, its bytes, as the outcome of `job`: a text with the byte it is about;
    /// empty if nothing is. For a readable job whose separations have the size that its file says.
    std::string FaultOnReadingBack(std::string_view file, const Job& job);
}
