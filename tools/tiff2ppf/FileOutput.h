// An output that is a regular file, or that does not exist yet.
#pragma once

#include "tiff2ppf/FileMask.h"
#include "tiff2ppf/Output.h"

#include <optional>

#include <sys/stat.h>

namespace Tiff2Ppf
{
    class FileOutput : public Output
    {
    public:
        /// The file at `path`, absolute and no link; `replaced` is the status of the one that is there now. Throws
        /// ConversionError if that may not be written.
        FileOutput(const std::string& name, const std::string& thePath, const std::optional<struct stat>& theReplaced);

        /// Renames the work file. It has got the permissions of the file that it replaces, and its owner where the
        /// system allows that, or those of any new file.
        void Publish() override;

    private:
        void TakeOverPermissions() const;

        std::string path;
        std::optional<struct stat> replaced;
        std::optional<FileMask> ownerOnly; ///< what replaces a file is open to nobody else while it is written
    };
}
