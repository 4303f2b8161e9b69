#include "ppfinfo/Zones.h"

#include "ppf/InkColumns.h"
#include "ppfinfo/MeasuredPreview.h"
#include "ppfinfo/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace PpfInfo
{
    namespace
    {
        std::string SeparationOf(const Ppf::Preview& preview)
        {
            return "separation \"" + Ppf::Shown(preview.inks.front()) + "\"";
        }

        /// Edges of the zones of a press in the columns of a preview.
        std::vector<double> PressEdges(std::uint64_t columns, double perInch, const ZoneChoice& choice)
        {
            const double width = choice.width * perInch;
            const auto count = static_cast<double>(choice.count);
            const double sheetBegin =
                choice.offset ? *choice.offset * perInch : (count * width - static_cast<double>(columns)) / 2;
            std::vector<double> edges(static_cast<std::size_t>(choice.count) + 1);
            for (std::size_t i = 0; i < edges.size(); ++i)
            {
                edges[i] = static_cast<double>(i) * width - sheetBegin;
            }
            return edges;
        }

        /// What of a preview lies beyond its zones, or nothing.
        std::string PartBeyondZones(const Ppf::Preview& preview, const Zones& zones)
        {
            if (zones.Count() == 0 || !zones.perInch)
            {
                return "";
            }
            const auto columns = static_cast<double>(preview.UprightWidth());
            // Less than this of a zone is rounding.
            const double least = 1e-6 * (zones.edges[1] - zones.edges[0]);
            std::string text;
            const auto add = [&](double beyond, const char* side)
            {
                if (beyond > least)
                {
                    text += (text.empty() ? "" : " and ") +
                            Fixed(Millimetres(std::min(beyond, columns), *zones.perInch), 1) + " mm at the " + side;
                }
            };
            add(zones.edges.front(), "left");
            add(columns - zones.edges.back(), "right");
            return text;
        }
    }

    std::optional<double> ParseLength(std::string_view text)
    {
        constexpr std::array<std::pair<std::string_view, double>, 4> UnitsPerInch = {{
            {"mm", MillimetresPerInch},
            {"cm", MillimetresPerInch / 10},
            {"inch", 1},
            {"point", PointsPerInch},
        }};
        constexpr double Longest = 1e6;
        double number = 0;
        const char* end = text.data() + text.size();
        const auto parsed = std::from_chars(text.data(), end, number);
        std::string_view unit = text.substr(static_cast<std::size_t>(parsed.ptr - text.data()));
        while (!unit.empty() && unit.front() == ' ')
        {
            unit.remove_prefix(1);
        }
        for (const auto& [name, perInch] : UnitsPerInch)
        {
            if (parsed.ec == std::errc() && unit == name && std::abs(number / perInch) <= Longest)
            {
                return number / perInch;
            }
        }
        return std::nullopt;
    }

    double Zones::EdgeAt(std::size_t edge) const
    {
        const double columns = edges[edge] - Origin();
        return perInch ? Millimetres(columns, *perInch) : columns;
    }

    Zones ZonesOf(const Ppf::Preview& preview, const ZoneChoice& choice, std::optional<Ppf::Finding>& finding)
    {
        Zones zones;
        const std::uint64_t columns = preview.UprightWidth();
        const std::optional<Ppf::Resolution> resolution = preview.UprightResolution();
        if (resolution)
        {
            zones.perInch = resolution->x;
        }
        if (choice.width <= 0)
        {
            zones.edges = Ppf::EdgesOfEqualZones(columns, choice.count);
            return zones;
        }
        if (!resolution)
        {
            KeepFirst(
                finding, Ppf::Finding{
                             preview.offset, SeparationOf(preview) + " has no resolution, so its zones have no width; "
                                                                     "give their number alone, with --zones"});
            return zones;
        }
        const double width = choice.width * resolution->x;
        if (choice.IsPress())
        {
            zones.edges = PressEdges(columns, resolution->x, choice);
        }
        else if (!(Ppf::CountOfZones(columns, width) <= static_cast<double>(MostZones)))
        {
            KeepFirst(
                finding, Ppf::Finding{
                             preview.offset, SeparationOf(preview) + " would have more than " +
                                                 std::to_string(MostZones) + " zones; give a greater --zone-width"});
        }
        else
        {
            zones.edges = Ppf::EdgesOfZones(columns, width);
        }
        return zones;
    }

    ZoneChoice UsualChoice(const Ppf::Preview& preview)
    {
        constexpr double UsualWidth = 32.5 / MillimetresPerInch;
        constexpr std::uint64_t UsualCount = 32;
        return preview.resolution ? ZoneChoice{0, UsualWidth, {}} : ZoneChoice{UsualCount, 0, {}};
    }

    std::vector<Ppf::Finding> SheetsBeyondZones(const Ppf::Document& document, const ZoneChoice& choice)
    {
        std::vector<Ppf::Finding> findings;
        for (std::size_t i = 0; i < document.sheets.size() && choice.IsPress(); ++i)
        {
            for (const Ppf::Surface& surface : document.sheets[i].surfaces)
            {
                std::string before;
                for (const Ppf::Preview& preview : surface.previews)
                {
                    std::optional<Ppf::Finding> none;
                    const std::string part = PartBeyondZones(preview, ZonesOf(preview, choice, none));
                    if (!part.empty() && part != before)
                    {
                        findings.push_back(
                            {preview.offset, part + " of the " + std::string(NameOf(surface.side)) + " of sheet " +
                                                 std::to_string(i + 1) +
                                                 " lie outside the ink zones, and their ink is not counted"});
                    }
                    before = part;
                }
            }
        }
        return findings;
    }

    double Millimetres(double pixels, double perInch)
    {
        return pixels / perInch * MillimetresPerInch;
    }
}
