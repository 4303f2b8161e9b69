#include "ppfwatch/FolderLook.h"

#include "host/Failure.h"
#include "host/Paths.h"
#include "job/InkSet.h"

#include <array>
#include <cerrno>
#include <climits>
#include <filesystem>
#include <memory>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace PpfWatch
{
    namespace
    {
        constexpr std::uint32_t FileEvents =
            IN_CREATE | IN_MODIFY | IN_ATTRIB | IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE;
        constexpr std::uint32_t FolderEvents = IN_DELETE_SELF | IN_MOVE_SELF;
        constexpr std::uint32_t Uncertain = IN_Q_OVERFLOW | IN_UNMOUNT | IN_IGNORED | FolderEvents;

        struct CloseFolder
        {
            void operator()(DIR* folder) const { closedir(folder); }
        };
        using OpenFolder = std::unique_ptr<DIR, CloseFolder>;

        /// The next entry but "." and ".."; none at the end, and then errno says whether it is one.
        const dirent* NextEntry(DIR* folder)
        {
            for (;;)
            {
                errno = 0;
                const dirent* const entry = readdir(folder);
                const std::string_view name = entry == nullptr ? "" : entry->d_name;
                if (name != "." && name != "..")
                {
                    return entry;
                }
            }
        }
    }

    FolderLook::FolderLook(std::string thePath)
        : path(std::move(thePath))
        , notices(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
    }

    std::string FolderLook::PathOf(const std::string& name) const
    {
        return Host::AbsolutePath(name, path);
    }

    Host::Descriptor FolderLook::Open() const
    {
        return Host::Descriptor(
            Host::Uninterrupted([&] { return open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    }

    /// A folder that has come back under the old name is another one, and has to be watched anew.
    void FolderLook::Watch(int folder)
    {
        struct stat status = {};
        const bool isSame =
            watch >= 0 && fstat(folder, &status) == 0 && status.st_dev == device && status.st_ino == number;
        if (!notices.IsOpen() || isSame)
        {
            return;
        }
        if (watch >= 0)
        {
            inotify_rm_watch(notices.Number(), watch);
        }
        const std::string self = "/proc/self/fd/" + std::to_string(folder);
        watch = inotify_add_watch(notices.Number(), self.c_str(), FileEvents | FolderEvents);
        if (fstat(folder, &status) == 0)
        {
            device = status.st_dev;
            number = status.st_ino;
        }
    }

    FolderLook::Notices FolderLook::TakeNotices()
    {
        Notices taken;
        alignas(inotify_event) std::array<char, 65536> events{};
        for (;;)
        {
            const ssize_t size =
                Host::Uninterrupted([&] { return read(notices.Number(), events.data(), events.size()); });
            if (size <= 0)
            {
                return taken;
            }
            for (ssize_t next = 0; next < size;)
            {
                const auto* const event =
                    reinterpret_cast<const inotify_event*>(&events[static_cast<std::size_t>(next)]);
                next += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
                if ((event->mask & IN_Q_OVERFLOW) == 0 && event->wd != watch)
                {
                    continue; // of a folder that is no longer the one
                }
                if ((event->mask & Uncertain) != 0)
                {
                    taken.isAllUncertain = true;
                }
                if ((event->mask & (IN_IGNORED | IN_MOVE_SELF)) != 0)
                {
                    number = 0; // to be watched anew by the next look
                }
                if (event->len > 0)
                {
                    taken.names.insert(event->name);
                }
            }
        }
    }

    int FolderLook::List(const std::function<void(const std::string&, std::optional<Stamp>)>& seen)
    {
        const int file = Host::Uninterrupted([&] { return open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
        if (file < 0)
        {
            return errno;
        }
        Watch(file);
        const OpenFolder folder(fdopendir(file));
        if (!folder)
        {
            const int problem = errno;
            close(file);
            return problem;
        }
        while (const dirent* const entry = NextEntry(folder.get()))
        {
            const std::string name = entry->d_name;
            const std::optional<Stamp> stamp = StampOf(dirfd(folder.get()), entry->d_name);
            if (stamp || faccessat(dirfd(folder.get()), entry->d_name, F_OK, AT_SYMLINK_NOFOLLOW) == 0)
            {
                seen(name, stamp);
            }
        }
        return errno;
    }

    std::optional<Stamp> FolderLook::Look(const std::string& name)
    {
        return StampOf(AT_FDCWD, PathOf(name).c_str());
    }

    TiffExtent FolderLook::ExtentOf(const std::string& name)
    {
        return ExtentOfTiff(PathOf(name));
    }

    /// The one name of a file, however a job file spells it.
    std::string FolderLook::NameOf(const std::string& written) const
    {
        const std::string full = std::filesystem::path(PathOf(written)).lexically_normal();
        const std::string folder = std::filesystem::path(path).lexically_normal().string() + '/';
        return full.rfind(folder, 0) == 0 ? full.substr(folder.size()) : full;
    }

    std::optional<JobFileNames> FolderLook::NamesIn(const std::string& jobFile)
    {
        std::optional<JobFileNames> names = NamesInJobFile(PathOf(jobFile));
        if (names)
        {
            for (std::vector<std::string>* const list : {&names->files, &names->sets})
            {
                for (std::string& name : *list)
                {
                    name = NameOf(name);
                }
            }
        }
        return names;
    }

    std::vector<std::string> FolderLook::FilesOfSet(const std::string& pattern)
    {
        const std::string place = pattern.substr(0, pattern.rfind('/') + 1);
        std::vector<std::string> files;
        try
        {
            for (const std::string& name : Host::NamesInFolder(Host::FolderOf(PathOf(pattern))))
            {
                std::string file = place + name;
                if (Jobs::IsInSet(pattern, file) && Look(file))
                {
                    files.push_back(std::move(file));
                }
            }
        }
        catch (const Host::Failure&)
        {
            // The conversion of a job that wants files of this folder says so, and fails.
        }
        return files;
    }
}
