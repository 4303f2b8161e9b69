// Running the program without a process: a file's bytes and a command line in, what it writes and its status out.
#pragma once

#include <string>
#include <vector>

namespace PpfInfo::Test
{
    struct Outcome
    {
        int status = 0;
        std::string out;
        std::string errors;
    };

    /// A folder of its own, removed with everything in it.
    class Folder
    {
    public:
        Folder();
        ~Folder();
        Folder(const Folder&) = delete;
        Folder& operator=(const Folder&) = delete;

        std::string Path(const std::string& name) const { return path + "/" + name; }
        std::string Write(const std::string& name, const std::string& bytes) const;
        std::string Read(const std::string& name) const;
        /// Names of what is in it, sorted.
        std::vector<std::string> Names() const;

    private:
        std::string path;
    };

    /// The program with these arguments.
    Outcome RunWith(const std::vector<std::string>& arguments);

    /// The program with these arguments and, as the last, a file of these bytes.
    Outcome RunOn(const std::string& bytes, std::vector<std::string> arguments);
}
