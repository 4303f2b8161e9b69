#include "ppfinfo/Extract.h"

#include "host/Output.h"
#include "host/Paths.h"
#include "ppf/Pictures.h"
#include "ppf/PngWriter.h"
#include "ppfinfo/MeasuredPreview.h"

#include <algorithm>
#include <array>

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
            std::optional<Host::Output> file;
            std::optional<Ppf::PngWriter> png;
            Ppf::DrawUpright(
                document, preview, component,
                [&](unsigned char* row)
                {
                    // Only now is it known that the data can hold so wide a row.
                    if (!png)
                    {
                        file.emplace(path, Host::Durability::OnDisk);
                        png.emplace(
                            file->Stream(), preview.UprightWidth(), preview.UprightHeight(),
                            Ppf::PngWriter::Colours::Grey, preview.UprightResolution());
                    }
                    std::transform(
                        row, row + preview.UprightWidth(), row,
                        [](unsigned char ink) { return static_cast<unsigned char>(255 - ink); });
                    png->WriteRow(row);
                });
            CountDataRead(preview);
            png->Finish();
            file->Publish();
        }
    }

    std::optional<Ppf::Finding> ExtractPictures(const Ppf::Document& document, const std::string& folder)
    {
        Host::MakeFolders(folder, true);
        std::optional<Ppf::Finding> finding;
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
                            WritePicture(document, preview, i, folder + '/' + name);
                        }
                        catch (const Ppf::FormatError& error)
                        {
                            KeepFirst(finding, error.AsFinding());
                        }
                    }
                }
            }
        }
        return finding;
    }
}
