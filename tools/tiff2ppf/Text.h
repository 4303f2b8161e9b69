// Text for a person: names in messages, and messages that stay on one line whatever a name or a path holds.
#pragma once

#include <string>

namespace Tiff2Ppf
{
    /// `text` between double quotes.
    std::string Quoted(const std::string& text);

    /// `text` with everything that a terminal would not show as itself written as \xNN per byte: control characters, line
    /// and paragraph separators, and bytes that are no UTF-8. Applied twice it changes nothing more.
    std::string OneLine(const std::string& text);

    /// Whether `text` is UTF-8 throughout.
    bool IsUtf8(const std::string& text);
}
