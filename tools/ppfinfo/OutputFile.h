// A file that appears whole or not at all. Apart from what fills it because every file that the program writes is
// written this way.
#pragma once

#include <fstream>
#include <string>

namespace PpfInfo
{
    /// Written beside its place under a hidden name and renamed into place by Commit; without Commit nothing is left.
    /// A file that is replaced passes on its permissions, and a link stays one. A path that exists and is no regular
    /// file, a pipe for one, is written directly.
    class OutputFile
    {
    public:
        /// Throws std::runtime_error that names the path if the file cannot be made.
        explicit OutputFile(const std::string& thePath);
        ~OutputFile();
        OutputFile(const OutputFile&) = delete;
        OutputFile& operator=(const OutputFile&) = delete;

        std::ostream& Stream() { return stream; }

        /// Throws std::runtime_error if anything was not written. Then the path is as it was.
        void Commit();

    private:
        std::string path;
        /// The name that it is written under.
        std::string draft;
        std::ofstream stream;
        bool committed = false;
    };
}
