#include "ppfwatch/FileMove.h"

#include "host/Descriptor.h"
#include "host/Failure.h"
#include "host/Paths.h"
#include "host/Sync.h"
#include "host/Text.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <tuple>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace PpfWatch
{
    namespace
    {
        constexpr std::size_t BlockBytes = 1048576;

        [[noreturn]] void Fail(const std::string& from, const std::string& to, int problem)
        {
            throw Host::Failure(from + " cannot be moved to " + to + ": " + Host::SystemText(problem));
        }

        Host::Descriptor OpenToRead(const std::string& path)
        {
            return Host::Descriptor(Host::Uninterrupted([&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC); }));
        }

        /// Copies the bytes; false on failure, and errno says why.
        bool CopyBytes(int from, int to)
        {
            std::vector<char> block(BlockBytes);
            for (;;)
            {
                const ssize_t size = Host::ReadAll(from, block.data(), block.size());
                if (size <= 0)
                {
                    return size == 0;
                }
                if (!Host::WriteAll(to, block.data(), static_cast<std::size_t>(size)))
                {
                    return false;
                }
            }
        }

        void CopyFile(const std::string& from, const std::string& to)
        {
            const Host::Descriptor source = OpenToRead(from);
            struct stat before = {};
            if (!source.IsOpen() || fstat(source.Number(), &before) != 0)
            {
                Fail(from, to, errno);
            }
            constexpr mode_t Permissions = S_IRWXU | S_IRWXG | S_IRWXO;
            Host::Descriptor copy(Host::Uninterrupted(
                [&] {
                    return open(to.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
                }));
            if (!copy.IsOpen() || !CopyBytes(source.Number(), copy.Number()))
            {
                Fail(from, to, errno);
            }
            // Some file systems know no permissions or owners.
            const timespec times[2] = {before.st_atim, before.st_mtim};
            std::ignore = fchmod(copy.Number(), before.st_mode & Permissions);
            std::ignore = futimens(copy.Number(), times);
            if (!Host::SyncFile(copy.Number()) || !copy.Close())
            {
                Fail(from, to, errno);
            }
            struct stat after = {};
            if (fstat(source.Number(), &after) != 0 || after.st_size != before.st_size ||
                after.st_mtim.tv_sec != before.st_mtim.tv_sec || after.st_mtim.tv_nsec != before.st_mtim.tv_nsec)
            {
                throw Host::Failure(from + " was written to while it was copied");
            }
        }
    }

    bool RenameToNew(const std::string& from, const std::string& to) noexcept
    {
        if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        {
            return true;
        }
        if (errno != EINVAL && errno != ENOSYS)
        {
            return false;
        }
        // The file system cannot do it in one step, as on many a network.
        struct stat status = {};
        if (lstat(to.c_str(), &status) == 0)
        {
            errno = EEXIST;
            return false;
        }
        return rename(from.c_str(), to.c_str()) == 0;
    }

    void MoveFile(const std::string& from, const std::string& to, const std::string& part)
    {
        if (RenameToNew(from, to))
        {
            return;
        }
        if (errno != EXDEV)
        {
            Fail(from, to, errno);
        }
        CopyFile(from, part);
        if (!RenameToNew(part, to))
        {
            const int problem = errno;
            unlink(part.c_str());
            Fail(from, to, problem);
        }
        SyncNames(Host::FolderOf(to));
        if (unlink(from.c_str()) != 0)
        {
            const int problem = errno;
            unlink(to.c_str());
            Fail(from, to, problem);
        }
    }

    bool HoldSameBytes(const std::string& first, const std::string& second)
    {
        const Host::Descriptor a = OpenToRead(first);
        const Host::Descriptor b = OpenToRead(second);
        std::vector<char> blockA(BlockBytes);
        std::vector<char> blockB(BlockBytes);
        for (;;)
        {
            const ssize_t sizeA = Host::ReadAll(a.Number(), blockA.data(), blockA.size());
            const ssize_t sizeB = Host::ReadAll(b.Number(), blockB.data(), blockB.size());
            if (sizeA < 0 || sizeA != sizeB || !std::equal(blockA.begin(), blockA.begin() + sizeA, blockB.begin()))
            {
                return false;
            }
            if (sizeA == 0)
            {
                return true;
            }
        }
    }

    void SyncNames(const std::string& folder)
    {
        if (!Host::SyncFolder(AT_FDCWD, folder.c_str()))
        {
            throw Host::Failure("the folder " + folder + " cannot be brought to the disk: " + Host::SystemText(errno));
        }
    }
}
