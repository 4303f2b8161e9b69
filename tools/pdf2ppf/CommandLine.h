// What the command line asks for.
#pragma once

#include "job/Job.h"
#include "pdf2ppf/PageList.h"

#include <map>
#include <optional>
#include <string>

namespace Pdf2Ppf
{
    struct CommandLine
    {
        std::string answer; ///< the text that --help or --version asks for; then nothing below is filled in
        std::string input;  ///< as given
        std::string output; ///< as given
        std::string jobName;
        PageList pages;
        bool duplex = false;    ///< pages 1 and 2 are front and back of a sheet, and so on
        std::string sheetName;  ///< with %d where the sheet's number goes
        double resolution = 0;  ///< of the previews, pixels per inch
        int oversampling = 0;   ///< rendered at so many times the resolution
        bool keepBlank = false; ///< also inks of a page without any ink on it
        std::map<std::string, Jobs::ParameterValue> parameters; ///< of every sheet
        Jobs::Orientation frontOrientation = Jobs::Orientation::Rotate0;
        Jobs::Orientation backOrientation = Jobs::Orientation::Rotate0;
        std::optional<Jobs::Compression> compression;
        std::optional<Jobs::Encoding> encoding;
        bool sync = true; ///< the output is brought to the disk
        bool verbose = false;
    };

    /// Throws Host::UsageError.
    CommandLine ParseCommandLine(int argc, const char* const* argv);
}
