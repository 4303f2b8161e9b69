// A file that is worked on before it is known to be good: it has a hidden name that nobody can guess, and does not
// outlive the run.
#pragma once

#include "host/Descriptor.h"

#include <array>
#include <string>

#include <sys/types.h>

namespace Host
{
    class Draft
    {
    public:
        /// Makes an empty file in `folder` under a new name that begins with a dot, with the permissions `mode` less what
        /// the process's mask takes away. Throws Failure that names the folder.
        Draft(const std::string& folder, mode_t mode);

        /// Removes the file if it still has its name, as signals that end the program do.
        ~Draft();
        Draft(const Draft&) = delete;
        Draft& operator=(const Draft&) = delete;

        /// The file, open for reading and writing.
        int Number() const { return file.Number(); }

        /// A path for what has to open the file by a name. It leads to the open file itself, whatever stands at the
        /// file's name meanwhile.
        std::string Path() const;

        /// Takes the file's name away: it is gone with this object, also if the program is killed.
        void Unlink();

        /// Gives the file its final name in the same folder, in one step, replacing a file of that name. With `toDisk` the
        /// file is on the disk before, and its name after. Throws Failure; unless that is about the last step, the folder
        /// is as it was.
        void MoveTo(const std::string& finalName, bool toDisk);

    private:
        Descriptor openFolder; ///< names are looked up here, so that a folder that is renamed meanwhile stays the same
        std::array<char, 32> name{};
        Descriptor file;
        bool hasName = false;
    };
}
