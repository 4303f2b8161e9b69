// A folder of its own for each test, gone with it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace SheetvaneTest
{
    class TempFolder
    {
    public:
        TempFolder()
        {
            std::string name = (std::filesystem::temp_directory_path() / "sheetvane.XXXXXX").string();
            if (mkdtemp(name.data()) == nullptr)
            {
                throw std::runtime_error("no temporary folder " + name);
            }
            path = name;
        }
        ~TempFolder()
        {
            std::error_code ignored;
            std::filesystem::remove_all(path, ignored);
        }
        TempFolder(const TempFolder&) = delete;
        TempFolder& operator=(const TempFolder&) = delete;

        std::string operator/(const std::string& name) const { return (path / name).string(); }

    private:
        std::filesystem::path path;
    };

    inline std::string BytesOf(const std::string& path)
    {
        std::ifstream file(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }

    inline void WriteBytes(const std::string& path, const std::string& bytes)
    {
        std::ofstream(path, std::ios::binary) << bytes;
    }
}
