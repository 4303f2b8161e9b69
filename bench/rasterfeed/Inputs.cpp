// Inputs on disk, since what is measured begins with the file.
#include "bench/rasterfeed/Inputs.h"

#include <filesystem>
#include <fstream>
#include <memory>

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
}

SampleRule Page(Pages::Kind kind)
{
    const auto page = std::make_shared<std::vector<std::uint8_t>>(Pages::Make(kind, pageWidth, pageHeight));
    return [page](std::uint32_t x, std::uint32_t y) -> std::uint32_t
    { return (*page)[std::size_t{y} * pageWidth + x]; };
}

SampleRule Plate()
{
    return [](std::uint32_t x, std::uint32_t y) -> std::uint32_t
    {
        const std::uint32_t shade = (x + y) / 400 % 128; // the square of a dot's radius grows with it
        const std::uint32_t dx = x % 16 > 8 ? 16 - x % 16 : x % 16;
        const std::uint32_t dy = y % 16 > 8 ? 16 - y % 16 : y % 16;
        return dx * dx + dy * dy < shade ? 0 : 1;
    };
}

std::string InputFile(const TiffForm& form, const SampleRule& rule, const std::string& name)
{
    return InputFile(
        form, TestSupport::InkRule([&](unsigned, std::uint32_t x, std::uint32_t y) { return rule(x, y); }), name);
}

std::string InputFile(const TiffForm& form, const TestSupport::InkRule& rule, const std::string& name)
{
    static const Folder folder;
    const fs::path path = folder.path / (name + ".tif");
    if (!fs::exists(path))
        std::ofstream(path, std::ios::binary) << TestSupport::MakePages({form}, rule);
    return path.string();
}
