// The order of sheets, as a person counts them.
#pragma once

#include <string_view>

namespace PpfWatch
{
    /// Whether `first` stands before `second` in natural order: runs of digits count as numbers, so that 2 is before 10, and
    /// all else by its bytes. Names that differ in leading zeros alone stand in the order of their bytes.
    bool IsNaturallyBefore(std::string_view first, std::string_view second);
}
