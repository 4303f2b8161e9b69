#include "FileOutput.h"

#include "Paths.h"

#include <tuple>

#include <unistd.h>

namespace Tiff2Ppf
{
    FileOutput::FileOutput(const std::string& name, const std::string& path, const std::optional<struct stat>& replaced)
        : Output(name, FolderOf(path))
        , m_path(path)
        , m_replaced(replaced)
    {
        if (!m_replaced)
            return;
        if (access(m_path.c_str(), W_OK) != 0)
            Fail(CouldNotOpen);
        m_ownerOnly.emplace(S_IRWXG | S_IRWXO);
    }

    void FileOutput::Publish()
    {
        if (m_replaced)
            TakeOverPermissions();
        if (!m_work.MoveTo(m_path))
            Fail("the file is good but cannot be put in its place");
    }

    void FileOutput::TakeOverPermissions() const
    {
        const char* const work = m_work.Path().c_str();
        // A group that cannot be kept must not hand its rights to the one that stands in its place.
        constexpr uid_t sameUser = static_cast<uid_t>(-1);
        constexpr gid_t sameGroup = static_cast<gid_t>(-1);
        std::ignore = chown(work, m_replaced->st_uid, sameGroup); // only root can give a file away
        const bool isGroupKept = chown(work, sameUser, m_replaced->st_gid) == 0;
        const mode_t kept = S_IRWXU | S_IRWXO | (isGroupKept ? S_IRWXG : 0U);
        if (chmod(work, m_replaced->st_mode & kept) != 0)
            Fail("the permissions cannot be kept");
    }
}
