// PostScript's strings: from the text of a token to the bytes that it stands for.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Ppf
{
    /// The bytes that a string token stands for: escapes, line ends and digits resolved. Nothing for other text.
    std::optional<std::string> StringOf(std::string_view text);
}
