#include "FileOutput.h"

#include "Paths.h"

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
        // What replaces a file must not be open to more eyes than that was, not even while it is being written.
        if (!m_work.Create())
            Fail(std::string(CouldNotOpen) + ": no file can be made beside it");
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
        const bool isSameOwner = chown(work, m_replaced->st_uid, m_replaced->st_gid) == 0;
        // A group that could not be kept does not get the rights of the one that had them.
        const mode_t kept = isSameOwner ? S_IRWXU | S_IRWXG | S_IRWXO : S_IRWXU | S_IRWXO;
        if (chmod(work, m_replaced->st_mode & kept) != 0)
            Fail("the permissions cannot be kept");
    }
}
