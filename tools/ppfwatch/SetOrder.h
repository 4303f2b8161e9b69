// The order of what a set of files holds: the process inks first, sheets as a person counts them.
#pragma once

#include <string>
#include <string_view>

namespace PpfWatch
{
    /// The ink that a word in a file's name stands for: c, M, yellow, BLACK and the like become Cyan, Magenta, Yellow and
    /// Black; any other is the ink's name itself.
    std::string InkOfWord(const std::string& word);

    /// Whether ink `first` stands before `second`: Cyan, Magenta, Yellow, Black, then the others by their bytes.
    bool IsInkBefore(const std::string& first, const std::string& second);

    /// Whether `first` stands before `second` in natural order: runs of digits count as numbers, so that 2 is before 10, and
    /// all else by its bytes. Names that differ in leading zeros alone stand in the order of their bytes.
    bool IsNaturallyBefore(std::string_view first, std::string_view second);
}
