#include "ppfinfo/ZoneChart.h"

#include "ppfinfo/Html.h"
#include "ppfinfo/Text.h"
#include "ppfinfo/ZoneChoice.h"

#include <algorithm>
#include <array>

namespace PpfInfo
{
    namespace
    {
        std::string Percent(double share)
        {
            return Fixed(share * 100, 3) + "%";
        }

        std::string GridLines(double top)
        {
            std::string svg;
            for (const char* const y : {"25%", "50%", "75%"})
            {
                svg.append("<line class=\"grid\" x1=\"0\" x2=\"100%\" y1=\"").append(y).append("\" y2=\"").append(y);
                svg += "\"/>";
            }
            return svg + "<text class=\"scale\" x=\"4\" y=\"11\">" + Shortest(top) + " %</text>";
        }

        std::string Bar(const ZoneChart& chart, std::size_t ink, std::size_t zone)
        {
            const InkZones& zones = chart.inks[ink];
            const double columns = zones.edges.back();
            const double left = zones.edges[zone] / columns;
            const double width = (zones.edges[zone + 1] - zones.edges[zone]) / columns;
            const auto inks = static_cast<double>(chart.inks.size());
            // A tenth of a zone stays free between zones.
            const double barWidth = width * 0.9 / inks;
            const double x = left + width * 0.05 + barWidth * static_cast<double>(ink);
            const double height = std::min(zones.coverage[zone] / chart.top, 1.0);

            std::string title = zones.name + ", zone " + std::to_string(zone + 1);
            if (chart.resolution)
            {
                title += " (" + Fixed(Millimetres(zones.edges[zone], *chart.resolution), 1) + " to " +
                         Fixed(Millimetres(zones.edges[zone + 1], *chart.resolution), 1) + " mm)";
            }
            title += ": " + Fixed(zones.coverage[zone], 2) + " %";
            // The clear bar over the full height is there to be pointed at where there is little ink.
            const std::string place = "<rect x=\"" + Percent(x) + "\" width=\"" + Percent(barWidth) + "\" y=\"";
            return "<g><title>" + Escaped(title) + "</title>" + place + "0\" height=\"100%\" class=\"aim\"/>" + place +
                   Percent(1 - height) + "\" height=\"" + Percent(height) + "\" class=\"bar\" fill=\"" +
                   HexOf(zones.colour) + "\"/></g>";
        }

        /// Zone numbers under the bars; a narrow screen shows every fifth.
        std::string Numbers(const InkZones& zones)
        {
            constexpr std::size_t MostNumbers = 40;
            const std::size_t count = zones.coverage.size();
            const std::size_t step = (count + MostNumbers - 1) / MostNumbers;
            std::string svg;
            for (std::size_t zone = 0; zone < count; ++zone)
            {
                const std::size_t number = zone + 1;
                // The last zone may be too narrow for a number of its own.
                const bool isNarrow = (zones.edges[zone + 1] - zones.edges[zone]) * 2 < zones.edges[1] - zones.edges[0];
                if (number % step != 0 || isNarrow)
                {
                    continue;
                }
                const double middle = (zones.edges[zone] + zones.edges[zone + 1]) / 2 / zones.edges.back();
                svg += "<text class=\"number" + std::string(number % (5 * step) == 0 || count <= 10 ? "" : " minor") +
                       "\" x=\"" + Percent(middle) + "\" y=\"112\">" + std::to_string(number) + "</text>";
            }
            return svg;
        }
    }

    double TopOf(const InkZones& zones)
    {
        const auto highest = std::max_element(zones.coverage.begin(), zones.coverage.end());
        const double greatest = highest == zones.coverage.end() ? 0 : *highest;
        constexpr std::array<double, 6> Tops = {5, 10, 20, 40, 60, 80};
        const auto found = std::find_if(Tops.begin(), Tops.end(), [&](double top) { return greatest <= top; });
        return found == Tops.end() ? 100 : *found;
    }

    std::string SvgOf(const ZoneChart& chart)
    {
        if (chart.inks.empty())
        {
            return "";
        }
        std::string svg = "<svg class=\"chart\" role=\"img\" aria-label=\"Ink zones\" width=\"100%\" height=\"118\">"
                          "<svg width=\"100%\" height=\"100\">" +
                          GridLines(chart.top);
        for (std::size_t ink = 0; ink < chart.inks.size(); ++ink)
        {
            for (std::size_t zone = 0; zone < chart.inks[ink].coverage.size(); ++zone)
            {
                svg += Bar(chart, ink, zone);
            }
        }
        return svg + "</svg>" + Numbers(chart.inks.front()) + "</svg>\n";
    }
}
