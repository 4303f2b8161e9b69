#include "ppfwatch/Scratch.h"

#include "host/Failure.h"
#include "host/Text.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

namespace PpfWatch
{
    namespace
    {
        std::string TemporaryFolder()
        {
            const char* const chosen = std::getenv("TMPDIR");
            return chosen != nullptr && chosen[0] == '/' ? chosen : "/tmp";
        }
    }

    Scratch::Scratch(const std::string& mark)
        : path(TemporaryFolder() + "/ppfwatch-" + std::to_string(geteuid()) + '-' + mark)
    {
        Remove();
    }

    Scratch::~Scratch()
    {
        Remove();
    }

    bool Scratch::IsOurs() const noexcept
    {
        struct stat status = {};
        return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid();
    }

    void Scratch::Make() const
    {
        if (mkdir(path.c_str(), S_IRWXU) != 0 && !(errno == EEXIST && IsOurs()))
        {
            throw Host::Failure("no folder for temporary files can be made: " + path + ": " + Host::SystemText(errno));
        }
    }

    void Scratch::Remove() const noexcept
    {
        if (!IsOurs())
        {
            return;
        }
        try
        {
            std::error_code ignored;
            std::filesystem::remove_all(path, ignored);
        }
        catch (const std::bad_alloc&)
        {
            return; // the next watcher removes it
        }
    }
}
