// Into which ink zones a picture is divided: so many of one width, or of a width in the units of the pressroom.
#pragma once

#include "ppf/Document.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace PpfInfo
{
    /// A length as it is given on the command line, "32.5mm", "3 cm", "1.28inch" or "92point", in inches. Nothing if
    /// the text is not such a length or not above 0.
    std::optional<double> ParseLength(std::string_view text);

    /// Neither field: no zones are wanted.
    struct ZoneChoice
    {
        /// So many zones of one width, or 0.
        std::uint64_t count = 0;
        /// Zones of this width in inches, or 0.
        double width = 0;

        bool IsGiven() const { return count > 0 || width > 0; }
    };

    /// The greatest number of zones that a picture is divided into.
    constexpr std::uint64_t MostZones = 100000;

    /// The edges of the zones in an upright preview, in its columns. None if zones have a width but the preview no
    /// resolution, or if there would be more than `mostZones`; `finding` then says so, unless it has one that stands
    /// further ahead.
    std::vector<double>
    ZoneEdges(const Ppf::Preview& preview, const ZoneChoice& choice, std::optional<Ppf::Finding>& finding);

    /// So many pixels at so many per inch, in millimetres.
    double Millimetres(double pixels, double perInch);
}
