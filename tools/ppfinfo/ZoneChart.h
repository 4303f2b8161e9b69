// Ink zones as a bar chart in SVG, as wide as the picture that it stands under.
#pragma once

#include "ppfinfo/InkColours.h"
#include "ppfinfo/Zones.h"

#include <string>
#include <vector>

namespace PpfInfo
{
    /// The zones of one ink.
    struct InkZones
    {
        std::string name;
        Colour colour;
        Zones zones;
        /// Columns of the ink's picture.
        double columns = 1;
        /// Per cents.
        std::vector<double> coverage;
    };

    /// What stands across the width of pictures and charts, in widths of the sheet: the sheet, which is from 0 to 1, and the
    /// zones of a press, which may lie beyond it.
    struct Frame
    {
        double begin = 0;
        double end = 1;

        void Hold(const InkZones& ink);
        double ShareAt(double place) const { return (place - begin) / (end - begin); }
    };

    /// Zones to draw, and what they are drawn against.
    struct ZoneChart
    {
        std::vector<const InkZones*> inks;
        Frame frame;
        /// The per cents of the chart's upper edge.
        double top = 100;
    };

    /// The least round number of per cents that no zone exceeds. The charts of one side have the greatest of its inks,
    /// so that they can be compared.
    double TopOf(const InkZones& zones);

    /// The chart as an svg element, as wide as the frame, with a group for each ink. Bars of several inks stand side by side within their zone. Every zone tells its
    /// number and per cent when it is pointed at.
    std::string SvgOf(const ZoneChart& chart);
}
