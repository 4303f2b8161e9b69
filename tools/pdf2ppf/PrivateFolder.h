// The folder that Ghostscript works in: nobody else's, and gone with all that is in it when the program ends, also by a
// signal.
#pragma once

#include "host/Descriptor.h"

#include <string>
#include <vector>

namespace Pdf2Ppf
{
    /// One at a time.
    class PrivateFolder
    {
    public:
        /// Makes it in the folder for temporary files. Throws Host::Failure.
        PrivateFolder();
        ~PrivateFolder();
        PrivateFolder(const PrivateFolder&) = delete;
        PrivateFolder& operator=(const PrivateFolder&) = delete;

        const std::string& Path() const { return path; }
        std::string operator/(const std::string& name) const { return path + '/' + name; }

        bool Has(const std::string& name) const;
        void Remove(const std::string& name) const noexcept;

        /// Names of all files in it that begin with `prefix`, in no order. Throws Host::Failure.
        std::vector<std::string> Names(const std::string& prefix) const;

        /// Whether its disk has no space left to speak of.
        bool IsFull() const noexcept;

        /// Makes the link `name` that leads to `target`. Throws Host::Failure.
        void Link(const std::string& name, const std::string& target) const;

        /// Removes all that is in it.
        void Empty() const noexcept;

    private:
        std::string path;
        Host::Descriptor folder;
    };
}
