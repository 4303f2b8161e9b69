// Names as they may stand between the parentheses of a PostScript string. The library writes a name as it comes, so the
// escaping is its host's affair.
#pragma once

#include <string>

namespace Jobs
{
    /// `name` with every backslash doubled and, if its parentheses do not balance, a backslash before each of them. A
    /// PostScript reader gets `name` back.
    std::string EscapedName(const std::string& name);
}
