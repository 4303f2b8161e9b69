// A set of files, one ink each: a pattern as `plates/page1(*).tif` whose * stands for the ink's name.
#pragma once

#include "job/Job.h"

#include <string>
#include <string_view>
#include <vector>

namespace Jobs
{
    /// The ink that a word in a file's name stands for: c, M, yellow, BLACK and the like become Cyan, Magenta, Yellow and
    /// Black; any other is the ink's name itself.
    std::string InkOfWord(const std::string& word);

    /// Whether ink `first` stands before `second`: Cyan, Magenta, Yellow, Black, then the others by their bytes.
    bool IsInkBefore(const std::string& first, const std::string& second);

    /// Whether `pattern` has exactly one *, in the last component of the path.
    bool IsSetPattern(std::string_view pattern);

    /// Whether the file called `name` is one of the set of `pattern`, which is such a pattern; folders are compared as they
    /// are spelt.
    bool IsInSet(std::string_view pattern, std::string_view name);

    /// The files that fit `pattern`, folders left out, as separations in the order of their inks; a relative pattern stands
    /// relative to `folder`, absolute. Throws Host::UsageError that says what is wrong: it is not such a pattern, its folder
    /// cannot be read, no file fits, or two are of one ink.
    std::vector<Separation> SeparationsOfSet(const std::string& pattern, const std::string& folder);
}
