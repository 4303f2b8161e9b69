// File names from ink names, and a PNG written for each.
#include "ppfinfo/Extract.h"

#include <array>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "ppf/Pictures.h"
#include "ppf/PngWriter.h"
#include "ppfinfo/InkMeasure.h"
#include "ppfinfo/OutputFile.h"

namespace ppfinfo
{
    namespace
    {
        std::string FileName(std::size_t sheet, ppf::Side side, std::size_t position, const std::string& ink)
        {
            // File systems take 255 bytes; what stands around the ink's name is short.
            constexpr std::size_t longestName = 200;
            constexpr std::string_view allowed = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-";
            std::string name = ink.substr(0, longestName);
            for (char& c : name)
            {
                c = allowed.find(c) == std::string_view::npos ? '_' : c;
            }
            return std::to_string(sheet) + "-" + std::string(NameOf(side)) + (position < 10 ? "-0" : "-") +
                   std::to_string(position) + "-" + name + ".png";
        }

        void WritePicture(
            const ppf::Document& document, const ppf::Preview& preview, unsigned component, const std::string& path)
        {
            OutputFile file(path);
            ppf::PngWriter png(
                file.Stream(), preview.UprightWidth(), preview.UprightHeight(), ppf::PngWriter::Colours::grey,
                preview.UprightResolution());
            std::vector<unsigned char> line(static_cast<std::size_t>(preview.UprightWidth()));
            ppf::DrawUpright(
                document, preview, component,
                [&](const unsigned char* ink)
                {
                    for (std::size_t x = 0; x < line.size(); ++x)
                    {
                        line[x] = static_cast<unsigned char>(255 - ink[x]);
                    }
                    png.WriteRow(line.data());
                });
            png.Finish();
            file.Commit();
        }
    }

    std::optional<ppf::Finding> ExtractPictures(const ppf::Document& document, const std::string& folder)
    {
        std::error_code failure;
        std::filesystem::create_directories(folder, failure);
        if (failure)
        {
            throw std::runtime_error("cannot make the folder " + folder + ": " + failure.message());
        }
        std::optional<ppf::Finding> fault;
        for (std::size_t sheet = 0; sheet < document.sheets.size(); ++sheet)
        {
            // Counted per side, should a sheet have two sections of one.
            std::array<std::size_t, 2> positions = {};
            for (const ppf::Surface& surface : document.sheets[sheet].surfaces)
            {
                std::size_t& position = positions[surface.side == ppf::Side::front ? 0 : 1];
                for (const ppf::Preview& preview : surface.previews)
                {
                    for (unsigned i = 0; i < preview.components; ++i)
                    {
                        const std::string name = FileName(sheet + 1, surface.side, ++position, preview.inks[i]);
                        try
                        {
                            WritePicture(document, preview, i, (std::filesystem::path(folder) / name).string());
                        }
                        catch (const ppf::FormatError& error)
                        {
                            KeepFirst(fault, error.AsFinding());
                        }
                    }
                }
            }
        }
        return fault;
    }
}
