#include "ppfinfo/ZoneChart.h"

#include "ppfinfo/Html.h"
#include "ppfinfo/Text.h"

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

        /// Where an edge of a zone stands in the chart, as a share of its width.
        double ShareAt(const ZoneChart& chart, const InkZones& ink, std::size_t edge)
        {
            return chart.frame.ShareAt(ink.zones.edges[edge] / ink.columns);
        }

        std::string Bar(const ZoneChart& chart, std::size_t position, std::size_t zone)
        {
            const InkZones& ink = *chart.inks[position];
            const double left = ShareAt(chart, ink, zone);
            const double width = ShareAt(chart, ink, zone + 1) - left;
            // A tenth of a zone stays free between zones.
            const double barWidth = width * 0.9 / static_cast<double>(chart.inks.size());
            const double x = left + width * 0.05 + barWidth * static_cast<double>(position);
            const double height = std::min(ink.coverage[zone] / chart.top, 1.0);

            std::string title = ink.name + ", zone " + std::to_string(zone + 1);
            if (ink.zones.perInch)
            {
                title +=
                    " (" + Fixed(ink.zones.EdgeAt(zone), 1) + " to " + Fixed(ink.zones.EdgeAt(zone + 1), 1) + " mm)";
            }
            title += ": " + Fixed(ink.coverage[zone], 2) + " %";
            // The clear bar over the full height is there to be pointed at where there is little ink.
            const std::string place = "<rect x=\"" + Percent(x) + "\" width=\"" + Percent(barWidth) + "\" y=\"";
            return "<g><title>" + Escaped(title) + "</title>" + place + "0\" height=\"100%\" class=\"aim\"/>" + place +
                   Percent(1 - height) + "\" height=\"" + Percent(height) + "\" class=\"bar\"/></g>";
        }

        /// Zone numbers under the bars; a narrow screen shows every fifth.
        std::string Numbers(const ZoneChart& chart)
        {
            constexpr std::size_t MostNumbers = 40;
            const InkZones& ink = *chart.inks.front();
            const std::vector<double>& edges = ink.zones.edges;
            const std::size_t count = ink.zones.Count();
            const std::size_t step = (count + MostNumbers - 1) / MostNumbers;
            std::string svg;
            for (std::size_t zone = 0; zone < count; ++zone)
            {
                const std::size_t number = zone + 1;
                // The last zone may be too narrow for a number of its own.
                const bool isNarrow = (edges[zone + 1] - edges[zone]) * 2 < edges[1] - edges[0];
                if (number % step != 0 || isNarrow)
                {
                    continue;
                }
                const double middle = (ShareAt(chart, ink, zone) + ShareAt(chart, ink, zone + 1)) / 2;
                svg += "<text class=\"number" + std::string(number % (5 * step) == 0 || count <= 10 ? "" : " minor") +
                       "\" x=\"" + Percent(middle) + "\" y=\"112\">" + std::to_string(number) + "</text>";
            }
            return svg;
        }
    }

    void Frame::Hold(const InkZones& ink)
    {
        if (ink.zones.Count() > 0)
        {
            begin = std::min(begin, ink.zones.edges.front() / ink.columns);
            end = std::max(end, ink.zones.edges.back() / ink.columns);
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
        const auto hasZones = [](const InkZones* ink) { return ink->zones.Count() > 0; };
        if (std::none_of(chart.inks.begin(), chart.inks.end(), hasZones))
        {
            return "";
        }
        std::string svg = "<svg class=\"chart\" role=\"img\" aria-label=\"Ink zones\" width=\"100%\" height=\"118\">"
                          "<svg width=\"100%\" height=\"100\">" +
                          GridLines(chart.top) + "<g class=\"bars\">";
        for (std::size_t ink = 0; ink < chart.inks.size(); ++ink)
        {
            svg += "<g fill=\"" + HexOf(chart.inks[ink]->colour) + "\">";
            for (std::size_t zone = 0; zone < chart.inks[ink]->coverage.size(); ++zone)
            {
                svg += Bar(chart, ink, zone);
            }
            svg += "</g>";
        }
        return svg + "</g></svg>" + Numbers(chart) + "</svg>\n";
    }
}
