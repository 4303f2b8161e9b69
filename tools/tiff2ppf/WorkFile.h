// The file that a run works on before it is known to be good: it has a hidden name and does not outlive the run.
#pragma once

#include <string>

namespace Tiff2Ppf
{
    class WorkFile
    {
    public:
        /// Chooses a name that begins with a dot, in `folder`, absolute, that need not exist yet. Creates nothing.
        explicit WorkFile(const std::string& folder);

        /// Removes the file if it is still there under its name, as signals that end the program do.
        ~WorkFile();
        WorkFile(const WorkFile&) = delete;
        WorkFile& operator=(const WorkFile&) = delete;

        const std::string& Path() const { return path; }

        /// Creates the file, empty and for its owner alone. False on failure, and errno says why.
        bool Create() const;

        /// Whether the file is there.
        bool Exists() const;

        /// Gives the file its final name, in one step, replacing a file of that name. What was replaced may stand under
        /// the work file's name until this object ends. False on failure, and errno says why.
        bool MoveTo(const std::string& thePath);

    private:
        std::string path;
    };
}
