// Running the program without a process: a file's bytes and a command line in, what it writes and its status out.
#pragma once

#include "tests/support/Folder.h"

#include <string>
#include <vector>

namespace PpfInfoTest
{
    using TestSupport::Folder;

    struct Outcome
    {
        int status = 0;
        std::string out;
        /// The error line without the program's name.
        std::string error;
    };

    /// The program with these arguments.
    Outcome RunWith(const std::vector<std::string>& arguments);

    /// The program with these arguments and, as the last, a file of these bytes.
    Outcome RunOn(const std::string& bytes, std::vector<std::string> arguments);

    /// The page that --report with these arguments makes of a file of these bytes, with this exit status.
    std::string ReportOf(const std::string& bytes, std::vector<std::string> arguments = {}, int status = 0);

    /// The samples of a PNG in this format of libpng's.
    std::vector<unsigned char> SamplesOf(const std::string& png, unsigned format);
}
