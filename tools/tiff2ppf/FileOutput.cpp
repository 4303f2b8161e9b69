#include "tiff2ppf/FileOutput.h"

#include "tiff2ppf/Paths.h"

#include <tuple>

#include <unistd.h>

namespace Tiff2Ppf
{
    FileOutput::FileOutput(
        const std::string& theName, const std::string& thePath, const std::optional<struct stat>& theReplaced)
        : Output(theName, FolderOf(thePath))
        , path(thePath)
        , replaced(theReplaced)
    {
        if (!replaced)
        {
            return;
        }
        if (access(path.c_str(), W_OK) != 0)
        {
            Fail(CouldNotOpen);
        }
        ownerOnly.emplace(S_IRWXG | S_IRWXO);
    }

    void FileOutput::Publish()
    {
        if (replaced)
        {
            TakeOverPermissions();
        }
        if (!work.MoveTo(path))
        {
            Fail("the file is good but cannot be put in its place");
        }
    }

    void FileOutput::TakeOverPermissions() const
    {
        const char* const file = work.Path().c_str();
        // A group that cannot be kept must not hand its rights to the one that stands in its place.
        constexpr uid_t SameUser = static_cast<uid_t>(-1);
        constexpr gid_t SameGroup = static_cast<gid_t>(-1);
        std::ignore = chown(file, replaced->st_uid, SameGroup); // only root can give a file away
        const bool isGroupKept = chown(file, SameUser, replaced->st_gid) == 0;
        const mode_t kept = S_IRWXU | S_IRWXO | (isGroupKept ? S_IRWXG : 0U);
        if (chmod(file, replaced->st_mode & kept) != 0)
        {
            Fail("the permissions cannot be kept");
        }
    }
}
