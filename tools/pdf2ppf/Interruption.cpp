#include "pdf2ppf/Interruption.h"

#include "host/Signals.h"

#include <atomic>
#include <csignal>
#include <cstddef>
#include <cstring>

#include <dirent.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Pdf2Ppf
{
    namespace
    {
        // What the handler looks at. Folder and path are in place whenever the flag is set.
        std::atomic<pid_t> groupToEnd{0};
        std::atomic<bool> isFolderSet{false};
        int folderToRemove = -1;
        const char* pathToRemove = nullptr;
        static_assert(std::atomic<pid_t>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

        void CleanUp() noexcept
        {
            const pid_t group = groupToEnd;
            if (group > 0)
            {
                kill(-group, SIGKILL);
                // It makes no more files once it is reaped.
                waitpid(group, nullptr, 0);
            }
            if (isFolderSet)
            {
                EmptyFolder(folderToRemove);
                rmdir(pathToRemove);
            }
        }
    }

    void EndOnSignal(pid_t group) noexcept
    {
        groupToEnd = group;
        Host::CallOnSignal(&CleanUp);
    }

    void RemoveFolderOnSignal(int folder, const char* path) noexcept
    {
        folderToRemove = folder;
        pathToRemove = path;
        isFolderSet = true;
        Host::CallOnSignal(&CleanUp);
    }

    void ForgetFolder() noexcept
    {
        isFolderSet = false;
    }

    void EmptyFolder(int folder) noexcept
    {
        // readdir would take memory. A pass may miss what others removed or made meanwhile, so there is one more after each
        // that removed something.
        alignas(dirent64) char entries[8192];
        for (bool hasRemoved = true; hasRemoved;)
        {
            hasRemoved = false;
            lseek(folder, 0, SEEK_SET);
            long size = 0;
            while ((size = syscall(SYS_getdents64, folder, entries, sizeof entries)) > 0)
            {
                for (long at = 0; at < size;)
                {
                    const char* const record = entries + at;
                    unsigned short length = 0;
                    std::memcpy(&length, record + offsetof(dirent64, d_reclen), sizeof length);
                    const char* const name = record + offsetof(dirent64, d_name);
                    const bool isFolderItself = std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
                    if (!isFolderItself &&
                        (unlinkat(folder, name, 0) == 0 || unlinkat(folder, name, AT_REMOVEDIR) == 0))
                    {
                        hasRemoved = true;
                    }
                    at += length;
                }
            }
        }
    }
}
