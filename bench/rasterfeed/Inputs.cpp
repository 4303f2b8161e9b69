#include "Inputs.h"

#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace
{
    namespace fs = std::filesystem;

    /// A folder that goes with the process.
    class Folder
    {
    public:
        Folder()
            : path(fs::temp_directory_path() / ("rasterfeed-bench-" + std::to_string(::getpid())))
        {
            fs::create_directories(path);
        }
        ~Folder()
        {
            std::error_code ignored;
            fs::remove_all(path, ignored);
        }
        fs::path path;
    };

    std::uint32_t Mix(std::uint32_t x, std::uint32_t y)
    {
        std::uint32_t hash = x * 2654435761u ^ y * 2246822519u;
        hash ^= hash >> 15;
        hash *= 3266489917u;
        return hash ^ hash >> 13;
    }
}

SampleRule Picture(Kind kind)
{
    if (kind == Kind::Flat)
    {
        return [](std::uint32_t x, std::uint32_t y) -> std::uint32_t
        {
            if (y % 40 < 12 && x > 400 && x < 3600) // lines of text
                return Mix(x / 3, y / 4) % 3 == 0 ? 0 : 255;
            return x / 500 % 2 == 0 ? 255 : 255 - x / 500 * 20;
        };
    }
    return [](std::uint32_t x, std::uint32_t y) { return ((x + y) / 24 + Mix(x, y) % 5) & 255; };
}

std::string InputFile(const TiffForm& form, const SampleRule& rule, const std::string& name)
{
    static const Folder folder;
    const fs::path path = folder.path / (name + ".tif");
    if (!fs::exists(path))
        std::ofstream(path, std::ios::binary) << MakeTiff(form, rule);
    return path.string();
}
