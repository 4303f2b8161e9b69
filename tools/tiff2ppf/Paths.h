// File names made absolute, as bytes: what the library gets may not depend on the current folder, and a name may hold
// any byte but zero. Nothing is resolved or normalised, so that a link stays the link that it is.
#pragma once

#include <string>

namespace Tiff2Ppf
{
    /// Absolute path of the current folder. Throws UsageError if it has been removed.
    std::string CurrentFolder();

    /// `name` as an absolute path; a relative one stands relative to `folder`, itself absolute.
    std::string AbsolutePath(const std::string& name, const std::string& folder);

    /// The folder part of the absolute path `path`, "/" at the least.
    std::string FolderOf(const std::string& path);
}
