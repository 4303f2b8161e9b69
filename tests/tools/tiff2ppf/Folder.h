// A folder of a test's own, with the little that these tests do in one. It is gone, with all that is in it, at the end.
#pragma once

#include <string>
#include <vector>

namespace Tiff2PpfTests
{
    class Folder
    {
    public:
        Folder();
        ~Folder();
        Folder(const Folder&) = delete;
        Folder& operator=(const Folder&) = delete;

        /// Absolute path of `name` in the folder; of the folder itself without a name.
        std::string operator/(const std::string& name) const { return path + '/' + name; }
        const std::string& Path() const { return path; }

        /// Makes the file `name` with these bytes; gives its path.
        std::string Write(const std::string& name, const std::string& bytes) const;

        /// Makes an uncompressed 8-bit grey TIFF, every pixel `value`, at 2 pixels per inch; gives its path.
        std::string WriteTiff(const std::string& name, int width = 4, int height = 2, int value = 0) const;

        /// The bytes of the file `name`; a failure of the test if it cannot be read.
        std::string Read(const std::string& name) const;

        /// All names in the folder, hidden ones too, sorted.
        std::vector<std::string> Names() const;

    private:
        std::string path;
    };
}
