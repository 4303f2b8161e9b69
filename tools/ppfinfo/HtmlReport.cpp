#include "ppfinfo/HtmlReport.h"

#include "ppf/Pictures.h"
#include "ppfinfo/Headings.h"
#include "ppfinfo/Html.h"
#include "ppfinfo/InkMeasure.h"
#include "ppfinfo/Observations.h"
#include "ppfinfo/ReportPictures.h"
#include "ppfinfo/Text.h"
#include "ppfinfo/ZoneChart.h"

#include <algorithm>
#include <vector>

namespace PpfInfo
{
    namespace
    {
        /// Longer side of the pictures in pixels: enough for a wide screen, small enough for a page to be mailed.
        constexpr std::uint64_t CompositeSide = 1600;
        constexpr std::uint64_t SeparationSide = 1200;
        /// Pictures below this width are shown with hard pixels.
        constexpr std::uint64_t SmallWidth = 300;
        /// The most common width of ink keys.
        constexpr double UsualZoneWidth = 32.5 / 25.4;
        constexpr std::uint64_t UsualZoneCount = 32;

        /// One ink of a side, measured.
        struct SideInk
        {
            const Ppf::Preview* preview;
            unsigned component;
            Colour colour;
            /// Nothing if the preview cannot be decoded.
            std::optional<double> coverage;
            InkZones zones;
            /// What to know about it.
            std::vector<Ppf::Finding> notes;
        };

        std::string Swatch(const Colour& colour)
        {
            return "<span class=\"swatch\" style=\"background:" + HexOf(colour) + "\"></span>";
        }

        /// An img element in the proportions of the sheet.
        std::string Image(const Ppf::Preview& preview, const std::string& url, const std::string& description)
        {
            const Ppf::Resolution resolution = preview.UprightResolution().value_or(Ppf::Resolution{1, 1});
            const double ratio = static_cast<double>(preview.UprightWidth()) / resolution.x /
                                 (static_cast<double>(preview.UprightHeight()) / resolution.y);
            return "<img" + std::string(preview.UprightWidth() < SmallWidth ? " class=\"small\"" : "") +
                   " style=\"aspect-ratio:" + Fixed(ratio, 5) + "\" alt=\"" + Escaped(description) + "\" src=\"" + url +
                   "\">\n";
        }

        class ReportWriter
        {
        public:
            ReportWriter(const Ppf::Document& theDocument, const ZoneChoice& theZones, std::ostream& theOut)
                : document(theDocument)
                , zones(theZones)
                , out(theOut)
            {
            }

            void Write(const std::string& fileName);

            const std::optional<Ppf::Finding>& FirstFinding() const { return firstFinding; }

        private:
            void WriteHead(const std::string& fileName);
            void WriteUnusual();
            void WriteSheet(std::size_t position);
            void WriteEntries(const Ppf::Sheet& sheet);
            void WriteSurface(const Ppf::Surface& surface);
            std::vector<SideInk> MeasureSide(const Ppf::Surface& surface);
            void WriteOverview(const std::vector<SideInk>& inks, double top);
            void WriteInkTable(const std::vector<SideInk>& inks);
            void WriteSeparations(const std::vector<SideInk>& inks, double top);
            void WriteZoneTable(const std::vector<SideInk>& inks);
            ZoneChoice ZonesFor(const Ppf::Preview& preview) const;

            const Ppf::Document& document;
            const ZoneChoice& zones;
            std::ostream& out;
            std::optional<Ppf::Finding> firstFinding;
        };

        void ReportWriter::Write(const std::string& fileName)
        {
            WriteHead(fileName);
            WriteUnusual();
            for (std::size_t i = 0; i < document.sheets.size(); ++i)
            {
                WriteSheet(i);
            }
            out << "</body>\n</html>\n";
        }

        void ReportWriter::WriteHead(const std::string& fileName)
        {
            const std::vector<Ppf::Sheet>& sheets = document.sheets;
            const std::string job = sheets.empty() ? "" : sheets.front().JobName();
            const std::string title = Escaped(job.empty() ? fileName : job);
            out << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
                   "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>"
                << title << "</title>\n<style>" << ReportStyle() << "</style>\n</head>\n<body>\n<header>\n<h1>" << title
                << "</h1>\n<div class=\"soft\">" << Escaped(fileName) << " &middot; print production file, version "
                << Escaped(document.version) << " &middot; " << sheets.size()
                << (sheets.size() == 1 ? " sheet" : " sheets") << " &middot; " << document.bytes.size()
                << " bytes</div>\n";
            if (sheets.size() > 1)
            {
                out << "<nav><ol>";
                for (std::size_t i = 0; i < sheets.size(); ++i)
                {
                    out << "<li><a href=\"#sheet-" << i + 1 << "\">" << Escaped(SheetHeading(sheets[i], i))
                        << "</a></li>";
                }
                out << "</ol></nav>\n";
            }
            out << "</header>\n";
        }

        void ReportWriter::WriteUnusual()
        {
            std::vector<Ppf::Finding> findings = Observations(document);
            if (document.damage)
            {
                findings.push_back(*document.damage);
                findings.back().text += "; nothing after this byte was read";
            }
            if (findings.empty())
            {
                return;
            }
            out << "<section class=\"unusual\"><h2>To be looked at</h2><ul>\n";
            for (const Ppf::Finding& finding : findings)
            {
                out << "<li>" << Escaped(finding.text) << " <span class=\"soft\">(byte " << finding.offset
                    << ")</span></li>\n";
            }
            out << "</ul></section>\n";
        }

        void ReportWriter::WriteSheet(std::size_t position)
        {
            const Ppf::Sheet& sheet = document.sheets[position];
            out << "<section class=\"sheet\" id=\"sheet-" << position + 1 << "\">\n<h2>"
                << Escaped(SheetHeading(sheet, position)) << "</h2>\n";
            WriteEntries(sheet);
            for (const Ppf::Surface& surface : sheet.surfaces)
            {
                WriteSurface(surface);
            }
            out << "</section>\n";
        }

        void ReportWriter::WriteEntries(const Ppf::Sheet& sheet)
        {
            out << "<dl><dt>Job</dt><dd>" << Escaped(sheet.JobName()) << "</dd><dt>Extent</dt><dd>"
                << Escaped(sheet.Extent()) << "</dd>\n";
            for (const Ppf::Entry& entry : sheet.Parameters())
            {
                out << "<dt>" << Escaped(entry.key) << "</dt><dd>" << Escaped(entry.value) << "</dd>\n";
            }
            out << "</dl>\n";
        }

        void ReportWriter::WriteSurface(const Ppf::Surface& surface)
        {
            out << "<section class=\"side\">\n<h3>" << NameOf(surface.side) << "</h3>\n";
            const std::vector<SideInk> inks = MeasureSide(surface);
            double top = 0;
            for (const SideInk& ink : inks)
            {
                top = std::max(top, TopOf(ink.zones));
            }
            if (inks.empty())
            {
                out << "<p class=\"soft\">No separation.</p>\n";
            }
            else
            {
                WriteOverview(inks, top);
                // With one ink there is nothing that the overview does not show.
                if (inks.size() > 1 || !inks.front().notes.empty())
                {
                    WriteSeparations(inks, top);
                }
                WriteZoneTable(inks);
            }
            out << "</section>\n";
        }

        std::vector<SideInk> ReportWriter::MeasureSide(const Ppf::Surface& surface)
        {
            std::vector<std::string> names;
            for (const Ppf::Preview& preview : surface.previews)
            {
                names.insert(names.end(), preview.inks.begin(), preview.inks.end());
            }
            const std::vector<Colour> colours = InkColours(names);
            std::vector<SideInk> inks;
            for (const Ppf::Preview& preview : surface.previews)
            {
                const InkMeasure measure = MeasureInks(document, preview);
                KeepFirst(firstFinding, measure.finding);
                for (unsigned i = 0; i < preview.components; ++i)
                {
                    SideInk ink = {&preview, i, colours[inks.size()], std::nullopt, {}, Observations(preview, measure)};
                    ink.zones.name = preview.inks[i];
                    ink.zones.colour = ink.colour;
                    if (!measure.inks.empty())
                    {
                        ink.coverage = measure.inks[i].Coverage();
                        std::optional<Ppf::Finding> zonesFinding;
                        ink.zones.edges = ZoneEdges(preview, ZonesFor(preview), zonesFinding);
                        if (zonesFinding)
                        {
                            ink.notes.push_back(*zonesFinding);
                            KeepFirst(firstFinding, zonesFinding);
                        }
                        ink.zones.coverage = measure.inks[i].Zones(ink.zones.edges);
                    }
                    inks.push_back(std::move(ink));
                }
            }
            return inks;
        }

        ZoneChoice ReportWriter::ZonesFor(const Ppf::Preview& preview) const
        {
            if (zones.IsGiven())
            {
                return zones;
            }
            return preview.resolution ? ZoneChoice{0, UsualZoneWidth} : ZoneChoice{UsualZoneCount, 0};
        }

        void ReportWriter::WriteOverview(const std::vector<SideInk>& inks, double top)
        {
            Composite composite;
            ZoneChart chart;
            chart.top = top;
            const Ppf::Preview* drawn = nullptr;
            for (std::size_t i = 0; i < inks.size();)
            {
                const Ppf::Preview& preview = *inks[i].preview;
                if (inks[i].coverage)
                {
                    const std::vector<Ppf::Picture> pictures = Ppf::ScaledPictures(document, preview, CompositeSide);
                    for (std::size_t component = 0; component < pictures.size(); ++component)
                    {
                        composite.Print(pictures[component], inks[i + component].colour);
                        if (!inks[i + component].zones.edges.empty())
                        {
                            chart.inks.push_back(inks[i + component].zones);
                        }
                    }
                    drawn = drawn == nullptr ? &preview : drawn;
                }
                i += preview.components;
            }
            out << "<div class=\"overview\">\n<figure><figcaption><b>All inks</b><span class=\"soft\">"
                << SizeText(*inks.front().preview) << "</span></figcaption>\n";
            if (drawn != nullptr)
            {
                if (const std::optional<Ppf::Resolution> resolution = drawn->UprightResolution())
                {
                    chart.resolution = resolution->x;
                }
                out << Image(*drawn, composite.Url(), "All inks over each other") << SvgOf(chart);
            }
            else
            {
                out << "<div class=\"broken\">No separation of this side can be decoded.</div>\n";
            }
            out << "</figure>\n";
            WriteInkTable(inks);
            out << "</div>\n";
        }

        void ReportWriter::WriteInkTable(const std::vector<SideInk>& inks)
        {
            out << "<table class=\"inks\"><thead><tr><th class=\"name\">Ink</th><th class=\"meter\"></th>"
                   "<th>Coverage</th></tr></thead><tbody>\n";
            for (const SideInk& ink : inks)
            {
                const std::string width = Fixed(ink.coverage.value_or(0), 2);
                out << "<tr><th class=\"name\">" << Swatch(ink.colour) << ' ' << Escaped(ink.zones.name)
                    << "</th><td class=\"meter\"><svg role=\"img\" aria-hidden=\"true\"><rect class=\"track\" "
                       "width=\"100%\" height=\"100%\"/><rect width=\""
                    << width << "%\" height=\"100%\" fill=\"" << HexOf(ink.colour) << "\"/></svg></td><td>"
                    << (ink.coverage ? width + " %" : "damaged") << "</td></tr>\n";
            }
            out << "</tbody></table>\n";
        }

        void ReportWriter::WriteSeparations(const std::vector<SideInk>& inks, double top)
        {
            out << "<div class=\"separations\">\n";
            std::vector<Ppf::Picture> pictures;
            const std::string firstSize = SizeText(*inks.front().preview);
            for (const SideInk& ink : inks)
            {
                const std::string size = SizeText(*ink.preview);
                out << "<figure><figcaption>" << Swatch(ink.colour) << "<b>" << Escaped(ink.zones.name)
                    << "</b><span class=\"soft\">" << (size == firstSize ? "" : size) << "</span><span class=\"per\">"
                    << (ink.coverage ? Fixed(*ink.coverage, 2) + " %" : "damaged") << "</span></figcaption>\n";
                if (ink.coverage)
                {
                    if (ink.component == 0)
                    {
                        pictures = Ppf::ScaledPictures(document, *ink.preview, SeparationSide);
                    }
                    ZoneChart chart;
                    if (!ink.zones.edges.empty())
                    {
                        chart.inks = {ink.zones};
                    }
                    chart.top = top;
                    if (const std::optional<Ppf::Resolution> resolution = ink.preview->UprightResolution())
                    {
                        chart.resolution = resolution->x;
                    }
                    out << Image(
                               *ink.preview, TintedPictureUrl(pictures[ink.component], ink.colour),
                               "Separation " + ToPrintable(ink.zones.name))
                        << SvgOf(chart);
                }
                for (const Ppf::Finding& note : ink.notes)
                {
                    out << "<div class=\"" << (ink.coverage ? "soft" : "broken") << "\">" << Escaped(note.text)
                        << " (byte " << note.offset << ")</div>\n";
                }
                out << "</figure>\n";
            }
            out << "</div>\n";
        }

        void ReportWriter::WriteZoneTable(const std::vector<SideInk>& inks)
        {
            const auto widest = std::max_element(
                inks.begin(), inks.end(),
                [](const SideInk& a, const SideInk& b) { return a.zones.coverage.size() < b.zones.coverage.size(); });
            const std::vector<double>& edges = widest->zones.edges;
            if (edges.empty())
            {
                return;
            }
            const std::optional<Ppf::Resolution> resolution = widest->preview->UprightResolution();
            const auto place = [&](double edge)
            { return Fixed(resolution ? Millimetres(edge, resolution->x) : edge, 1); };
            out << "<h4>Ink zones: mean coverage in per cent</h4>\n<div class=\"scroll\"><table class=\"zones\"><thead>"
                   "<tr><th>Zone</th><th>"
                << (resolution ? "mm" : "pixels") << "</th>";
            for (const SideInk& ink : inks)
            {
                out << "<th>" << Swatch(ink.colour) << ' ' << Escaped(ink.zones.name) << "</th>";
            }
            out << "</tr></thead><tbody>\n";
            for (std::size_t zone = 0; zone + 1 < edges.size(); ++zone)
            {
                out << "<tr><th>" << zone + 1 << "</th><td>" << place(edges[zone]) << "&ndash;"
                    << place(edges[zone + 1]) << "</td>";
                for (const SideInk& ink : inks)
                {
                    const std::vector<double>& coverage = ink.zones.coverage;
                    out << "<td>" << (zone < coverage.size() ? Fixed(coverage[zone], 2) : "&ndash;") << "</td>";
                }
                out << "</tr>\n";
            }
            out << "</tbody></table></div>\n";
        }
    }

    std::optional<Ppf::Finding> WriteHtmlReport(
        const std::string& fileName, const Ppf::Document& document, const ZoneChoice& zones, std::ostream& out)
    {
        ReportWriter writer(document, zones, out);
        writer.Write(fileName);
        return writer.FirstFinding();
    }
}
