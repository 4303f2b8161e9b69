#include "host/Sync.h"

#include "host/Descriptor.h"

#include <tuple>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Host
{
    bool SyncFile(int file) noexcept
    {
        return Uninterrupted([&] { return fsync(file); }) == 0;
    }

    void ReserveSpace(int file) noexcept
    {
        struct stat status = {};
        if (fstat(file, &status) == 0)
        {
            std::ignore = fallocate(file, FALLOC_FL_KEEP_SIZE, 0, status.st_size);
        }
    }

    bool SyncFolder(int from, const char* path) noexcept
    {
        const Descriptor folder(Uninterrupted([&] { return openat(from, path, O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
        if (!folder.IsOpen() && errno == EACCES)
        {
            // A folder that takes files and shows none cannot be opened for this: everything is brought to the disk.
            sync();
            return true;
        }
        // Some network file systems have nothing to bring for a folder, and say EINVAL.
        return folder.IsOpen() && (SyncFile(folder.Number()) || errno == EINVAL);
    }
}
