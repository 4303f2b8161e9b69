#include "tests/support/Folder.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>

namespace TestSupport
{
    namespace
    {
        template <class File>
        File& Checked(File& file, const std::string& path)
        {
            if (!file)
            {
                throw std::system_error(errno, std::generic_category(), path);
            }
            return file;
        }
    }

    Folder::Folder()
        : path(std::filesystem::temp_directory_path() / "sheetvane-test.XXXXXX")
    {
        if (mkdtemp(path.data()) == nullptr)
        {
            throw std::system_error(errno, std::generic_category(), path);
        }
    }

    Folder::~Folder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }

    std::string Folder::Write(const std::string& name, const std::string& bytes) const
    {
        std::string entry = *this / name;
        std::ofstream file(entry, std::ios::binary);
        Checked(file, entry) << bytes;
        file.close();
        Checked(file, entry);
        return entry;
    }

    std::vector<std::string> Folder::Names(const std::string& name) const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(*this / name))
        {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    std::map<std::string, std::string> Folder::FilesIn(const std::string& path)
    {
        std::map<std::string, std::string> files;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(path))
        {
            const std::string name = entry.path().lexically_relative(path);
            files.insert(
                entry.is_directory() ? std::pair(name + '/', std::string()) : std::pair(name, BytesOf(entry.path())));
        }
        return files;
    }

    std::string Folder::BytesOf(const std::string& path)
    {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(Checked(file, path)), {}};
    }
}
