// Scoped change of the process's mask for new files.
#pragma once

#include <sys/stat.h>

namespace Tiff2Ppf
{
    class FileMask
    {
    public:
        /// New files get none of the permissions in `mask`, until the end of this object.
        explicit FileMask(mode_t mask)
            : before(umask(mask))
        {
        }
        ~FileMask() { umask(before); }
        FileMask(const FileMask&) = delete;
        FileMask& operator=(const FileMask&) = delete;

    private:
        mode_t before;
    };
}
