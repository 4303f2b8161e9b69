// Any bytes as a print production file: everything that a program does with one, short of writing to disk. Beyond not
// crashing, it holds that what the check calls well formed can be measured and drawn, and that coverage is a per cent.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "ppf/Check.h"
#include "ppf/DocumentReader.h"
#include "ppf/InkColumns.h"
#include "ppf/Pictures.h"

namespace
{
    void Require(bool holds)
    {
        if (!holds)
        {
            std::abort();
        }
    }

    bool IsPerCent(double value)
    {
        return value >= 0 && value <= 100.000001;
    }

    void Use(const ppf::Document& document, const ppf::Preview& preview)
    {
        constexpr std::uint64_t longestSide = 64;
        constexpr double zoneWidth = 2.7;
        const std::uint64_t columns = preview.UprightWidth();
        for (const ppf::InkColumns& ink : ppf::Measure(document, preview).inks)
        {
            Require(IsPerCent(ink.Coverage()));
            for (const double zone : ink.Zones(ppf::EdgesOfEqualZones(columns, 7)))
            {
                Require(IsPerCent(zone));
            }
            Require(IsPerCent(ink.Zones(ppf::EdgesOfZones(columns, zoneWidth)).back()));
        }
        for (const ppf::Picture& picture : ppf::ScaledPictures(document, preview, longestSide))
        {
            Require(picture.ink.size() == picture.width * picture.height);
        }
        std::uint64_t rows = 0;
        ppf::DrawUpright(document, preview, preview.components - 1, [&](const unsigned char*) { ++rows; });
        Require(rows == preview.UprightHeight());
    }
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const ppf::Document document = ppf::ReadDocument(bytes);
    const bool isWellFormed = ppf::Check(document, ppf::CheckDepth::everything).empty();
    Require(!isWellFormed || ppf::Check(document, ppf::CheckDepth::structure).empty());
    for (const ppf::Sheet& sheet : document.sheets)
    {
        Require(sheet.offset + sheet.length <= size);
        for (const ppf::Surface& surface : sheet.surfaces)
        {
            for (const ppf::Preview& preview : surface.previews)
            {
                Require(preview.inks.size() == preview.components);
                try
                {
                    Use(document, preview);
                }
                catch (const ppf::FormatError& error)
                {
                    Require(error.AsFinding().offset <= size);
                }
            }
        }
    }
    return 0;
}
