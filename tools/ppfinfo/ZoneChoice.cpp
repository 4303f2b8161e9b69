#include "ppfinfo/ZoneChoice.h"

#include "ppf/InkColumns.h"
#include "ppfinfo/InkMeasure.h"

#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace PpfInfo
{
    namespace
    {
        constexpr double MillimetresPerInch = 25.4;
        constexpr double PointsPerInch = 72;
    }

    std::optional<double> ParseLength(std::string_view text)
    {
        constexpr std::array<std::pair<std::string_view, double>, 4> UnitsPerInch = {{
            {"mm", MillimetresPerInch},
            {"cm", MillimetresPerInch / 10},
            {"inch", 1},
            {"point", PointsPerInch},
        }};
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
            if (parsed.ec == std::errc() && unit == name && std::isfinite(number) && number > 0)
            {
                return number / perInch;
            }
        }
        return std::nullopt;
    }

    std::vector<double>
    ZoneEdges(const Ppf::Preview& preview, const ZoneChoice& choice, std::optional<Ppf::Finding>& finding)
    {
        const std::uint64_t columns = preview.UprightWidth();
        if (choice.width <= 0)
        {
            return Ppf::EdgesOfEqualZones(columns, choice.count);
        }
        const std::string separation = "separation \"" + Ppf::Shown(preview.inks.front()) + "\"";
        const std::optional<Ppf::Resolution> resolution = preview.UprightResolution();
        if (!resolution)
        {
            KeepFirst(
                finding,
                Ppf::Finding{
                    preview.offset,
                    separation + " has no resolution, so its zones have no width; give their number with --zones"});
            return {};
        }
        const double width = choice.width * resolution->x;
        if (!(Ppf::CountOfZones(columns, width) <= static_cast<double>(MostZones)))
        {
            KeepFirst(
                finding, Ppf::Finding{
                             preview.offset, separation + " would have more than " + std::to_string(MostZones) +
                                                 " zones; give a greater --zone-width"});
            return {};
        }
        return Ppf::EdgesOfZones(columns, width);
    }

    double Millimetres(double pixels, double perInch)
    {
        return pixels / perInch * MillimetresPerInch;
    }
}
