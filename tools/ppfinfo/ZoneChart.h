// Ink zones as a bar chart in SVG, as wide as the picture that it stands under.
#pragma once

#include "ppfinfo/InkColours.h"

#include <optional>
#include <string>
#include <vector>

namespace PpfInfo
{
    /// The zones of one ink.
    struct InkZones
    {
        std::string name;
        Colour colour;
        /// Edges in columns of the picture; one more than zones.
        std::vector<double> edges;
        /// Per cents.
        std::vector<double> coverage;
    };

    /// Zones to draw, and what they are drawn against.
    struct ZoneChart
    {
        std::vector<InkZones> inks;
        /// The per cents of the chart's upper edge.
        double top = 100;
        /// Pixels per inch across the sheet, if known: then zones are named by millimetres as well.
        std::optional<double> resolution;
    };

    /// The least round number of per cents that no zone exceeds. The charts of one side have the greatest of its inks,
    /// so that they can be compared.
    double TopOf(const InkZones& zones);

    /// The chart as an svg element. Bars of several inks stand side by side within their zone. Every zone tells its
    /// number and per cent when it is pointed at.
    std::string SvgOf(const ZoneChart& chart);
}
