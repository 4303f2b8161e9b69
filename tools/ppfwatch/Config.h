// The configuration of a watched folder. It is read as strictly as a job file: what is misspelt is refused with its place,
// not passed over in the night.
#pragma once

#include "ppfwatch/NamePattern.h"

#include <chrono>
#include <cstddef>
#include <map>
#include <string>

namespace PpfWatch
{
    struct Config
    {
        // Absolute paths, all different from `in`.
        std::string in;
        std::string out;
        std::string done;
        std::string failed;

        NamePattern names;
        std::chrono::milliseconds settle; ///< for so long no file of a whole job has come or changed
        std::size_t separations = 0;      ///< with so many of them a job is whole sooner; 0: this is not looked at
        std::size_t workers = 0;          ///< conversions side by side, 1 at least

        std::string resolution = "auto"; ///< of the previews, as the converters take it: "auto", "keep", or a number

        std::string parameters = "{}"; ///< of every sheet, as the JSON object of a job file
        std::map<std::string, std::string> parameterText =
            {}; ///< the same as PostScript text, as a command line takes it
    };

    /// Reads the file at `path`; folders in it stand relative to its own. Throws UsageError that names file and place.
    Config LoadConfig(const std::string& path);
}
