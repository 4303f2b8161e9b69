#include "host/Paths.h"

#include "host/Failure.h"
#include "host/Sync.h"
#include "host/Text.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>
#include <string_view>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Host
{
    namespace
    {
        /// As many as the system follows.
        constexpr int MaxLinks = 40;

        bool IsFolder(const std::string& path)
        {
            struct stat status = {};
            return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
        }
    }

    std::string CurrentFolder()
    {
        std::array<char, PATH_MAX> path{};
        if (getcwd(path.data(), path.size()) == nullptr)
        {
            throw UsageError("the current folder cannot be found: " + SystemText(errno));
        }
        return path.data();
    }

    std::string TemporaryFolder()
    {
        const char* const chosen = std::getenv("TMPDIR");
        return chosen != nullptr && chosen[0] == '/' ? chosen : "/tmp";
    }

    std::string AbsolutePath(const std::string& name, const std::string& folder)
    {
        if (!name.empty() && name.front() == '/')
        {
            return name;
        }
        return folder.back() == '/' ? folder + name : folder + '/' + name;
    }

    std::string FolderOf(const std::string& path)
    {
        const auto slash = path.rfind('/');
        return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
    }

    std::string NameIn(const std::string& path)
    {
        return path.substr(path.rfind('/') + 1);
    }

    std::string EndOfLinks(const std::string& path)
    {
        std::string end = path;
        for (int i = 0; i < MaxLinks; ++i)
        {
            std::array<char, PATH_MAX> target{};
            const ssize_t size = readlink(end.c_str(), target.data(), target.size());
            if (size < 0 && (errno == EINVAL || errno == ENOENT))
            {
                return end; // no link, or nothing at all
            }
            if (size < 0)
            {
                throw Failure(path + ": the link cannot be followed: " + SystemText(errno));
            }
            end = AbsolutePath(std::string(target.data(), static_cast<std::size_t>(size)), FolderOf(end));
        }
        throw Failure(path + ": the link cannot be followed: " + SystemText(ELOOP));
    }

    std::vector<std::string> NamesInFolder(const std::string& folder)
    {
        const auto fail = [&] { throw Failure("the folder " + folder + " cannot be read: " + SystemText(errno)); };
        DIR* opened = nullptr;
        do
        {
            opened = opendir(folder.c_str());
        } while (opened == nullptr && errno == EINTR);
        const std::unique_ptr<DIR, int (*)(DIR*)> listing(opened, &closedir);
        if (!listing)
        {
            fail();
        }
        std::vector<std::string> names;
        for (;;)
        {
            errno = 0;
            const dirent* const entry = readdir(listing.get());
            if (entry == nullptr && errno != 0)
            {
                fail();
            }
            if (entry == nullptr)
            {
                return names;
            }
            const std::string_view name = entry->d_name;
            if (name != "." && name != "..")
            {
                names.emplace_back(name);
            }
        }
    }

    void MakeFolders(const std::string& folder, bool toDisk)
    {
        if (IsFolder(folder))
        {
            return;
        }
        if (const std::string above = FolderOf(folder); above != folder)
        {
            MakeFolders(above, toDisk);
        }
        if (mkdir(folder.c_str(), S_IRWXU | S_IRWXG | S_IRWXO) != 0)
        {
            const int problem = errno;
            if (IsFolder(folder))
            {
                return; // somebody else made it meanwhile, or it is "folder/"
            }
            throw Failure(
                "the folder " + folder + " cannot be made: " + SystemText(problem == EEXIST ? ENOTDIR : problem));
        }
        if (toDisk && !SyncFolder(AT_FDCWD, FolderOf(folder).c_str()))
        {
            throw Failure("the folder " + folder + " cannot be brought to the disk: " + SystemText(errno));
        }
    }
}
