// Text for people and programs: names of unknown character sets as UTF-8, numbers without a locale's help.
#pragma once

#include <string>
#include <string_view>

namespace PpfInfo
{
    /// Characters of valid UTF-8 as they are; each byte that is part of none as the character of ISO 8859-1.
    std::string ToUtf8(std::string_view bytes);

    /// The same, with control characters written as \xNN, so that a name in a file cannot drive a terminal.
    std::string ToPrintable(std::string_view bytes);

    /// Characters of a UTF-8 text, as an estimate of the columns that it takes.
    std::size_t WidthOf(std::string_view text);

    /// Filled with blanks up to a width.
    std::string PaddedLeft(const std::string& text, std::size_t width);
    std::string PaddedRight(const std::string& text, std::size_t width);

    /// With so many digits after the point.
    std::string Fixed(double value, int digits);

    /// The shortest text that reads back as the same number: "2", "50.8".
    std::string Shortest(double value);
}
