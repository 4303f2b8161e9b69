// Any bytes as a print production file: everything that a program does with one, short of writing to disk. Beyond not
// crashing, it holds that what the check calls well formed can be measured and drawn, and that coverage is a per cent.

#include "ppf/Check.h"
#include "ppf/DocumentReader.h"
#include "ppf/InkColumns.h"
#include "ppf/Pictures.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

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

    void Use(const Ppf::Document& document, const Ppf::Preview& preview)
    {
        constexpr std::uint64_t LongestSide = 64;
        constexpr double ZoneWidth = 2.7;
        const std::uint64_t columns = preview.UprightWidth();
        for (const Ppf::InkColumns& ink : Ppf::Measure(document, preview).inks)
        {
            Require(IsPerCent(ink.Coverage()));
            for (const double zone : ink.Zones(Ppf::EdgesOfEqualZones(columns, 7)))
            {
                Require(IsPerCent(zone));
            }
            Require(IsPerCent(ink.Zones(Ppf::EdgesOfZones(columns, ZoneWidth)).back()));
            Require(IsPerCent(ink.Zones({-3.5, 0.25, 1e9}).front()));
        }
        std::uint64_t rows = 0;
        Ppf::Scaler scaler(columns, preview.UprightHeight(), LongestSide);
        Ppf::DrawUpright(
            document, preview, preview.components - 1,
            [&](const unsigned char* row)
            {
                ++rows;
                scaler.Add(row);
            });
        Require(rows == preview.UprightHeight());
        const Ppf::Picture picture = scaler.Finish();
        Require(picture.ink.size() == picture.width * picture.height && picture.width <= LongestSide);
    }
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const Ppf::Document document = Ppf::ReadDocument(bytes);
    const bool isWellFormed = Ppf::Check(document, Ppf::CheckDepth::Everything).empty();
    Require(!isWellFormed || Ppf::Check(document, Ppf::CheckDepth::Structure).empty());
    for (const Ppf::Sheet& sheet : document.sheets)
    {
        Require(sheet.offset + sheet.length <= size);
        for (const Ppf::Surface& surface : sheet.surfaces)
        {
            for (const Ppf::Preview& preview : surface.previews)
            {
                Require(preview.inks.size() == preview.components);
                try
                {
                    Use(document, preview);
                }
                catch (const Ppf::FormatError& error)
                {
                    Require(error.AsFinding().offset <= size);
                }
            }
        }
    }
    return 0;
}
