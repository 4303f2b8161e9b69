// A command that the sweep runs again and again: the program, its arguments, and the folder that it works in.
#pragma once

#include "tests/support/Folder.h"

#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace FaultTest
{
    /// Names in a folder, relative to it, with what the files hold; a folder's name ends with a slash.
    using Files = std::map<std::string, std::string>;

    struct Scenario
    {
        std::string name;
        int status;          ///< with which the program ends if nothing fails
        std::string program; ///< "tiff2ppf" or "ppfinfo"
        std::vector<std::string> arguments;
        Files files;            ///< in the folder before the run
        std::string input = ""; ///< what is on standard input
    };

    std::vector<Scenario> Scenarios();

    std::ostream& operator<<(std::ostream& out, const Scenario& scenario);

    Files FilesIn(const std::string& folder);
}
