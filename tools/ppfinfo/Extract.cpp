// File names from ink names, and a PNG written for each.
#include "ppfinfo/Extract.h"

#include "ppf/Pictures.h"
#include "ppf/PngWriter.h"
#include "ppfinfo/InkMeasure.h"
#include "ppfinfo/OutputFile.h"

#include <array>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <vector>

namespace PpfInfo
{
    namespace
    {
        std::string FileName(std::size_t sheet, Ppf::Side side, std::size_t position, const std::string& ink)
        {
            // File systems take 255 bytes; what stands around the ink's name is short.
            constexpr std::size_t LongestName = 200;
            constexpr std::string_view Allowed = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789._-";
            std::string name = ink.substr(0, LongestName);
            for (char& c : name)
            {
                c = Allowed.find(c) == std::string_view::npos ? '_' : c;
            }
            return std::to_string(sheet) + "-" + std::string(NameOf(side)) + (position < 10 ? "-0" : "-") +
                   std::to_string(position) + "-" + name + ".png";
        }

        void WritePicture(
            const Ppf::Document& document, const Ppf::Preview& preview, unsigned component, const std::string& path)
        {
            OutputFile file(path);
            Ppf::PngWriter png(
                file.Stream(), preview.UprightWidth(), preview.UprightHeight(), Ppf::PngWriter::Colours::Grey,
                preview.UprightResolution());
            std::vector<unsigned char> line(static_cast<std::size_t>(preview.UprightWidth()));
            Ppf::DrawUpright(
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

    std::optional<Ppf::Finding> ExtractPictures(const Ppf::Document& document, const std::string& folder)
    {
        std::error_code failure;
        std::filesystem::create_directories(folder, failure);
        if (failure)
        {
            throw std::runtime_error("cannot make the folder " + folder + ": " + failure.message());
        }
        std::optional<Ppf::Finding> fault;
        for (std::size_t sheet = 0; sheet < document.sheets.size(); ++sheet)
        {
            // Counted per side, should a sheet have two sections of one.
            std::array<std::size_t, 2> positions = {};
            for (const Ppf::Surface& surface : document.sheets[sheet].surfaces)
            {
                std::size_t& position = positions[surface.side == Ppf::Side::Front ? 0 : 1];
                for (const Ppf::Preview& preview : surface.previews)
                {
                    for (unsigned i = 0; i < preview.components; ++i)
                    {
                        const std::string name = FileName(sheet + 1, surface.side, ++position, preview.inks[i]);
                        try
                        {
                            WritePicture(document, preview, i, (std::filesystem::path(folder) / name).string());
                        }
                        catch (const Ppf::FormatError& error)
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
