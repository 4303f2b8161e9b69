// A folder of a test's own, below TMPDIR, with the little that tests do in one. It is gone at the end, with all that is in it.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace TestSupport
{
    class Folder
    {
    public:
        /// Throws std::system_error if none can be made.
        Folder();
        ~Folder();
        Folder(const Folder&) = delete;
        Folder& operator=(const Folder&) = delete;

        /// Absolute path of the folder, and of `name` in it.
        const std::string& Path() const { return path; }
        std::string operator/(const std::string& name) const { return path + '/' + name; }

        /// Makes the file `name` with these bytes; gives its path. Throws std::system_error.
        std::string Write(const std::string& name, const std::string& bytes) const;

        /// The bytes of the file `name`. Throws std::system_error.
        std::string Read(const std::string& name) const { return BytesOf(*this / name); }

        /// All names in the folder `name`, in this one without it, hidden ones too, sorted.
        std::vector<std::string> Names(const std::string& name = ".") const;

        /// All that is in the folder at `path` and below: names relative to it, a folder's with a slash at its end, and the
        /// files' bytes.
        static std::map<std::string, std::string> FilesIn(const std::string& path);

        /// The bytes of the file at `path`, wherever it is. Throws std::system_error.
        static std::string BytesOf(const std::string& path);

    private:
        std::string path;
    };
}
