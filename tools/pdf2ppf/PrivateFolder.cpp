#include "pdf2ppf/PrivateFolder.h"

#include "host/Failure.h"
#include "host/Paths.h"
#include "host/Signals.h"
#include "host/Text.h"
#include "pdf2ppf/Interruption.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <new>
#include <system_error>

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace Pdf2Ppf
{
    namespace
    {
        void RemoveTree(const std::string& path) noexcept
        {
            try
            {
                std::error_code ignored;
                std::filesystem::remove_all(path, ignored);
            }
            catch (const std::bad_alloc&)
            {
                return;
            }
        }
    }

    PrivateFolder::PrivateFolder()
        : path(Host::TemporaryFolder() + "/sheetvane-XXXXXX")
    {
        const Host::SignalsBlocked untilKnown;
        if (mkdtemp(path.data()) == nullptr)
        {
            throw Host::Failure(
                "no folder for temporary files can be made in " + Host::FolderOf(path) + ": " +
                Host::SystemText(errno));
        }
        folder = Host::Descriptor(
            Host::Uninterrupted([this] { return open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
        if (!folder.IsOpen())
        {
            const int problem = errno;
            rmdir(path.c_str());
            throw Host::Failure(path + ": " + Host::SystemText(problem));
        }
        RemoveFolderOnSignal(folder.Number(), path.c_str());
    }

    PrivateFolder::~PrivateFolder()
    {
        // Files need no memory to be gone; folders among them, which Ghostscript has never made, may stay for want of it.
        Empty();
        if (rmdir(path.c_str()) != 0)
        {
            RemoveTree(path);
        }
        ForgetFolder();
    }

    bool PrivateFolder::Has(const std::string& name) const
    {
        return faccessat(folder.Number(), name.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0;
    }

    void PrivateFolder::Remove(const std::string& name) const noexcept
    {
        unlinkat(folder.Number(), name.c_str(), 0);
    }

    std::vector<std::string> PrivateFolder::Names(const std::string& prefix) const
    {
        std::vector<std::string> names = Host::NamesInFolder(path);
        names.erase(
            std::remove_if(
                names.begin(), names.end(),
                [&](const std::string& name) { return name.compare(0, prefix.size(), prefix) != 0; }),
            names.end());
        return names;
    }

    bool PrivateFolder::IsFull() const noexcept
    {
        constexpr std::uint64_t LeastBytes = 65536;
        struct statvfs disk = {};
        return fstatvfs(folder.Number(), &disk) == 0 && std::uint64_t(disk.f_bavail) * disk.f_frsize < LeastBytes;
    }

    void PrivateFolder::Link(const std::string& name, const std::string& target) const
    {
        if (symlinkat(target.c_str(), folder.Number(), name.c_str()) != 0)
        {
            throw Host::Failure((*this / name) + ": " + Host::SystemText(errno));
        }
    }

    void PrivateFolder::Empty() const noexcept
    {
        EmptyFolder(folder.Number());
    }
}
