#include "tiff2ppf/WorkFile.h"

#include "tiff2ppf/Descriptor.h"
#include "tiff2ppf/Paths.h"
#include "tiff2ppf/Signals.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Tiff2Ppf
{
    namespace
    {
        /// Short, as a name that is derived from that of the output could be too long where the output's is not; and not
        /// to be guessed, so that nobody can have a link waiting there.
        std::string RandomName()
        {
            constexpr char Digits[] = "0123456789abcdef";
            std::array<unsigned char, 8> random{};
            if (getentropy(random.data(), random.size()) != 0)
            {
                throw std::system_error(errno, std::generic_category(), "no random numbers");
            }
            std::string name = ".tiff2ppf-";
            for (const unsigned char byte : random)
            {
                name += {Digits[byte >> 4U], Digits[byte & 0x0FU]};
            }
            return name;
        }
    }

    WorkFile::WorkFile(const std::string& folder)
        : path(AbsolutePath(RandomName(), folder))
    {
        RemoveFileOnSignal(path);
    }

    WorkFile::~WorkFile()
    {
        if (!path.empty())
        {
            unlink(path.c_str());
        }
        ForgetFile();
    }

    bool WorkFile::Create() const
    {
        return Descriptor(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR)).IsOpen();
    }

    bool WorkFile::Exists() const
    {
        return access(path.c_str(), F_OK) == 0;
    }

    bool WorkFile::MoveTo(const std::string& thePath)
    {
        // A rename over a file has file systems write the new one out to the disk before it returns, which takes longer
        // than the conversion did. The two change places instead, and what was replaced is removed as the work file.
        struct stat old = {};
        if (lstat(thePath.c_str(), &old) == 0 && S_ISREG(old.st_mode) &&
            renameat2(AT_FDCWD, path.c_str(), AT_FDCWD, thePath.c_str(), RENAME_EXCHANGE) == 0)
        {
            return true;
        }
        if (std::rename(path.c_str(), thePath.c_str()) != 0)
        {
            return false;
        }
        path.clear();
        return true;
    }
}
