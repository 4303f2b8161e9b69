// Into which ink zones a sheet is divided: so many of one width over the sheet, zones of one width from its left edge, or
// the zones of a press, which the sheet lies under.
#pragma once

#include "ppf/Document.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace PpfInfo
{
    constexpr double MillimetresPerInch = 25.4;
    constexpr double PointsPerInch = 72;

    /// A length as it is given on the command line, "32.5mm", "-3 cm", "1.28inch" or "92point", in inches. Nothing if
    /// the text is not such a length, or one beyond all presses.
    std::optional<double> ParseLength(std::string_view text);

    /// Neither count nor width: no zones are asked for.
    struct ZoneChoice
    {
        /// So many zones, or 0.
        std::uint64_t count = 0;
        /// Zones of this width in inches, or 0.
        double width = 0;
        /// Of a press: how far right of the left edge of zone 1 the left edge of the sheet lies, in inches. Without it the
        /// sheet lies in the middle.
        std::optional<double> offset;

        bool IsGiven() const { return count > 0 || width > 0; }
        bool IsPress() const { return count > 0 && width > 0; }
    };

    /// The greatest number of zones that a sheet is divided into.
    constexpr std::uint64_t MostZones = 100000;

    /// The zones of one upright preview.
    struct Zones
    {
        /// In its columns, ascending; one more than zones, or none. Those of a press may lie beyond the sheet.
        std::vector<double> edges;
        /// Where the millimetres of the zones begin, in its columns: at the left edge of zone 1.
        double Origin() const { return edges.empty() ? 0 : edges.front(); }
        /// Columns per inch, if known.
        std::optional<double> perInch;

        std::size_t Count() const { return edges.empty() ? 0 : edges.size() - 1; }

        /// The edge of that number from zone 1's left edge on, in millimetres, or in columns if those are not known.
        double EdgeAt(std::size_t edge) const;

        /// Width of zone 1 in inches; for zones whose columns per inch are known.
        double WidthInInches() const { return (edges[1] - edges[0]) / *perInch; }
    };

    /// The zones of a choice that is given. None if they have a width but the preview no resolution, or if there would be
    /// too many; `finding` then says so, unless it has one that stands further ahead.
    Zones ZonesOf(const Ppf::Preview& preview, const ZoneChoice& choice, std::optional<Ppf::Finding>& finding);

    /// The choice for a preview where none was given: zones of the most common width, if the resolution is known.
    ZoneChoice UsualChoice(const Ppf::Preview& preview);

    /// What to say of sheets that reach beyond the zones of a press, in the order of the file: once for a side whose
    /// separations lie alike.
    std::vector<Ppf::Finding> SheetsBeyondZones(const Ppf::Document& document, const ZoneChoice& choice);

    /// So many pixels at so many per inch, in millimetres.
    double Millimetres(double pixels, double perInch);
}
