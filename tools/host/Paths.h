// File names as bytes: a name may hold any byte but zero. Nothing is normalised, so that a link stays the link that it
// is until somebody asks for its end.
#pragma once

#include <string>
#include <vector>

namespace Host
{
    /// Absolute path of the current folder. Throws UsageError if it has been removed.
    std::string CurrentFolder();

    /// The folder for temporary files: TMPDIR, else /tmp. Absolute.
    std::string TemporaryFolder();

    /// `name` as an absolute path; a relative one stands relative to `folder`, itself absolute.
    std::string AbsolutePath(const std::string& name, const std::string& folder);

    /// The folder part of `path`: "/" at the least, "." for a name alone.
    std::string FolderOf(const std::string& path);

    /// The part of `path` after its folder.
    std::string NameIn(const std::string& path);

    /// The path at the end of the links that begin at `path`, whether there is a file or not. Throws Failure for links
    /// in a circle, and for one that cannot be read.
    std::string EndOfLinks(const std::string& path);

    /// All names in the folder `folder` but "." and "..", as the system gives them. Throws Failure that names the folder.
    std::vector<std::string> NamesInFolder(const std::string& folder);

    /// Makes the folder `folder` and those above it that are missing. With `toDisk` each is brought to the disk in the
    /// folder above it. Throws Failure that names the one that cannot be made; others stay.
    void MakeFolders(const std::string& folder, bool toDisk);
}
