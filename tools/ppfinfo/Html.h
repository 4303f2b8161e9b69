// Text in the markup of a page.
#pragma once

#include <string>
#include <string_view>

namespace PpfInfo
{
    /// A text from a file, fit to stand between tags and within quoted attributes: as UTF-8, without control
    /// characters, with everything that markup is made of escaped.
    std::string Escaped(std::string_view text);

    /// The style sheet of the report.
    std::string_view ReportStyle();
}
