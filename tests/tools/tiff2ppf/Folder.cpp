#include "tests/tools/tiff2ppf/Folder.h"

#include <gtest/gtest.h>
#include <tiffio.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace Tiff2PpfTests
{
    namespace fs = std::filesystem;

    Folder::Folder()
        : path(fs::temp_directory_path() / "tiff2ppf-test-XXXXXX")
    {
        if (mkdtemp(path.data()) == nullptr)
        {
            ADD_FAILURE() << "no folder can be made: " << path;
        }
    }

    Folder::~Folder()
    {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }

    std::string Folder::Write(const std::string& name, const std::string& bytes) const
    {
        std::ofstream(*this / name, std::ios::binary) << bytes;
        return *this / name;
    }

    std::string Folder::WriteTiff(const std::string& name, int width, int height, int value) const
    {
        std::string entry = *this / name;
        TIFF* const tiff = TIFFOpen(entry.c_str(), "w");
        TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
        TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height);
        TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
        TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
        TIFFSetField(tiff, TIFFTAG_XRESOLUTION, 2.0);
        TIFFSetField(tiff, TIFFTAG_YRESOLUTION, 2.0);
        TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
        std::string line(static_cast<std::size_t>(width), static_cast<char>(value));
        for (int row = 0; row < height; ++row)
        {
            TIFFWriteScanline(tiff, line.data(), static_cast<std::uint32_t>(row), 0);
        }
        TIFFClose(tiff);
        return entry;
    }

    std::string Folder::Read(const std::string& name) const
    {
        std::ifstream file(*this / name, std::ios::binary);
        EXPECT_TRUE(file) << *this / name << " cannot be read";
        std::ostringstream bytes;
        bytes << file.rdbuf();
        return bytes.str();
    }

    std::vector<std::string> Folder::Names() const
    {
        std::vector<std::string> names;
        for (const fs::directory_entry& entry : fs::directory_iterator(path))
        {
            names.push_back(entry.path().filename());
        }
        std::sort(names.begin(), names.end());
        return names;
    }
}
