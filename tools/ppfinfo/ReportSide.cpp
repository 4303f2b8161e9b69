#include "ppfinfo/ReportSide.h"

#include "ppf/Pictures.h"
#include "ppfinfo/Headings.h"
#include "ppfinfo/Html.h"
#include "ppfinfo/MeasuredPreview.h"
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
        /// Longer side of the pictures in pixels: enough for a wide screen, small enough for a page to be mailed. Sides of
        /// many inks have smaller ones, as every ink is a picture of its own.
        constexpr std::uint64_t LargeSide = 1600;
        constexpr std::uint64_t UsualSide = 1200;
        constexpr std::size_t FewInks = 6;
        /// Pictures below this width are shown with hard pixels.
        constexpr std::uint64_t SmallWidth = 300;

        /// One ink of a side, measured.
        struct SideInk
        {
            const Ppf::Preview* preview;
            unsigned component;
            InkZones zones;
            /// Nothing if the preview cannot be decoded.
            std::optional<double> coverage;
            /// What to know about it.
            std::vector<Ppf::Finding> notes;
            /// Number of its picture in the page.
            std::string id;
        };

        std::string Swatch(const Colour& colour)
        {
            return "<span class=\"swatch\" style=\"background:" + HexOf(colour) + "\"></span>";
        }

        class SideWriter
        {
        public:
            SideWriter(std::string theId, std::vector<SideInk> theInks, std::ostream& theOut)
                : id(std::move(theId))
                , inks(std::move(theInks))
                , out(theOut)
            {
                for (const SideInk& ink : inks)
                {
                    frame.Hold(ink.zones);
                    top = std::max(top, TopOf(ink.zones));
                }
            }

            void Write(const Ppf::Document& document)
            {
                WriteOverview(document);
                // With one ink there is nothing that the overview does not show.
                if (inks.size() > 1 || !inks.front().notes.empty())
                {
                    WriteSeparations();
                }
                WriteZoneTable();
            }

        private:
            void WriteOverview(const Ppf::Document& document);
            void WriteLayer(const Ppf::Document& document, const SideInk& ink);
            void WriteInkTable();
            void WriteTotal();
            void WriteSeparations();
            void WriteZoneTable();
            std::string FigureBegin(const std::string& name) const;
            std::string PictureBegin(const std::string& description) const;
            std::string Chart(std::vector<const InkZones*> charted) const;

            /// The picture's size: columns, and rows in units of the columns' width.
            double Width() const { return static_cast<double>(inks.front().preview->UprightWidth()); }
            double Height() const;

            const std::string id;
            const std::vector<SideInk> inks;
            std::ostream& out;
            Frame frame;
            double top = 0;
            InkTotal total;
        };

        double SideWriter::Height() const
        {
            const Ppf::Preview& preview = *inks.front().preview;
            const Ppf::Resolution resolution = preview.UprightResolution().value_or(Ppf::Resolution{1, 1});
            return static_cast<double>(preview.UprightHeight()) * resolution.x / resolution.y;
        }

        /// `--ratio` is that of the picture's width to its height.
        std::string SideWriter::FigureBegin(const std::string& name) const
        {
            const double ratio = Width() * (frame.end - frame.begin) / Height();
            return "<figure class=\"" + name + "\" style=\"--ratio:" + Fixed(ratio, 4) + "\">";
        }

        std::string SideWriter::PictureBegin(const std::string& description) const
        {
            const double width = Width();
            return "<svg class=\"picture" + std::string(width < SmallWidth ? " small" : "") +
                   "\" role=\"img\" aria-label=\"" + Escaped(description) + "\" viewBox=\"" +
                   Fixed(frame.begin * width, 3) + " 0 " + Fixed((frame.end - frame.begin) * width, 3) + " " +
                   Fixed(Height(), 3) + "\"><rect class=\"paper\" width=\"" + Shortest(width) + "\" height=\"" +
                   Fixed(Height(), 3) + "\"/>";
        }

        std::string SideWriter::Chart(std::vector<const InkZones*> charted) const
        {
            return SvgOf({std::move(charted), frame, top});
        }

        void SideWriter::WriteOverview(const Ppf::Document& document)
        {
            out << "<div class=\"overview\">\n"
                << FigureBegin("stage") << "<figcaption><b>All inks</b><span class=\"soft\">"
                << SizeText(*inks.front().preview) << "</span></figcaption>\n";
            std::vector<const InkZones*> charted;
            bool isDrawn = false;
            for (const SideInk& ink : inks)
            {
                charted.push_back(&ink.zones);
                isDrawn = isDrawn || ink.coverage;
            }
            if (isDrawn)
            {
                out << PictureBegin("All inks over each other") << "<g class=\"layers\">\n";
                for (const SideInk& ink : inks)
                {
                    WriteLayer(document, ink);
                }
                out << "</g></svg>\n" << Chart(std::move(charted));
            }
            else
            {
                out << "<div class=\"broken\">No separation of this side can be decoded.</div>\n";
            }
            out << "</figure>\n";
            WriteInkTable();
            out << "</div>\n";
        }

        /// A group for every ink, so that the inks' numbers are those of their groups.
        void SideWriter::WriteLayer(const Ppf::Document& document, const SideInk& ink)
        {
            out << "<g>";
            if (ink.coverage)
            {
                const Ppf::Preview& preview = *ink.preview;
                Ppf::Scaler scaler(
                    preview.UprightWidth(), preview.UprightHeight(), inks.size() <= FewInks ? LargeSide : UsualSide);
                total.BeginInk(preview.UprightWidth(), preview.UprightHeight());
                Ppf::DrawUpright(
                    document, preview, ink.component,
                    [&](unsigned char* row)
                    {
                        scaler.Add(row);
                        total.Add(row);
                    });
                CountDataRead(preview);
                out << "<image id=\"" << ink.id << "\" width=\"" << Shortest(Width()) << "\" height=\""
                    << Fixed(Height(), 3) << "\" preserveAspectRatio=\"none\" href=\""
                    << TintedPictureUrl(scaler.Finish(), ink.zones.colour) << "\"/>";
            }
            out << "</g>\n";
        }

        void SideWriter::WriteInkTable()
        {
            // A form, whose button sets the boxes back without a script.
            out << "<form autocomplete=\"off\"><table class=\"inks\"><thead><tr><th class=\"name\">Ink</th>"
                   "<th class=\"meter\"></th><th>Coverage</th></tr></thead><tbody>\n";
            for (const SideInk& ink : inks)
            {
                const std::string width = Fixed(ink.coverage.value_or(0), 2);
                out << "<tr><th class=\"name\"><label><input type=\"checkbox\" checked>" << Swatch(ink.zones.colour)
                    << "<span>" << Escaped(ink.zones.name) << "</span>"
                    << "</label></th><td class=\"meter\"><svg role=\"img\" aria-hidden=\"true\"><rect class=\"track\" "
                       "width=\"100%\" height=\"100%\"/><rect width=\""
                    << width << "%\" height=\"100%\" fill=\"" << HexOf(ink.zones.colour) << "\"/></svg></td><td>"
                    << (ink.coverage ? width + " %" : "damaged") << "</td></tr>\n";
            }
            out << "</tbody>";
            WriteTotal();
            out << "</table></form>\n";
        }

        void SideWriter::WriteTotal()
        {
            if (inks.size() < 2)
            {
                return;
            }
            double sum = 0;
            for (const SideInk& ink : inks)
            {
                sum += ink.coverage.value_or(0);
            }
            out << "<tfoot><tr><th class=\"name\" colspan=\"2\">Total area coverage</th><td>" << Fixed(sum, 2)
                << " %</td></tr>";
            if (const std::optional<InkTotal::Spot> spot = total.Highest())
            {
                const std::optional<Ppf::Resolution> resolution = inks.front().preview->UprightResolution();
                // The middle of the pixel.
                const double x = static_cast<double>(spot->x) + 0.5;
                const double y = static_cast<double>(spot->y) + 0.5;
                out << "<tr><th class=\"name\" colspan=\"2\">Highest spot<span class=\"soft\">, "
                    << (resolution ? Fixed(Millimetres(x, resolution->x), 1) + " mm from the left, " +
                                         Fixed(Millimetres(y, resolution->y), 1) + " mm from the top"
                                   : "column " + std::to_string(spot->x + 1) + ", row " + std::to_string(spot->y + 1))
                    << "</span></th><td>" << Fixed(spot->coverage, 2) << " %</td></tr>";
            }
            out << "<tr class=\"switch\"><td colspan=\"3\"><button type=\"reset\">Show all "
                   "inks</button></td></tr></tfoot>";
        }

        void SideWriter::WriteSeparations()
        {
            out << "<div class=\"separations\">\n";
            const std::string firstSize = SizeText(*inks.front().preview);
            for (const SideInk& ink : inks)
            {
                const std::string size = SizeText(*ink.preview);
                out << FigureBegin("separation") << "<figcaption>" << Swatch(ink.zones.colour) << "<b>"
                    << Escaped(ink.zones.name) << "</b><span class=\"soft\">" << (size == firstSize ? "" : size)
                    << "</span><span class=\"per\">" << (ink.coverage ? Fixed(*ink.coverage, 2) + " %" : "damaged")
                    << "</span></figcaption>\n";
                if (ink.coverage)
                {
                    const std::string picture = PictureBegin("Separation " + ToPrintable(ink.zones.name)) +
                                                "<use href=\"#" + ink.id + "\"/></svg>";
                    out << "<a href=\"#large-" << ink.id << "\" title=\"Show large\">" << picture << "</a>\n"
                        << Chart({&ink.zones}) << "<div class=\"large\" id=\"large-" << ink.id << "\"><a href=\"#" << id
                        << "\">" << Swatch(ink.zones.colour) << " <b>" << Escaped(ink.zones.name) << "</b> Close</a>"
                        << picture << "</div>\n";
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

        void SideWriter::WriteZoneTable()
        {
            const auto most = std::max_element(
                inks.begin(), inks.end(),
                [](const SideInk& a, const SideInk& b) { return a.zones.coverage.size() < b.zones.coverage.size(); });
            const Zones& zones = most->zones.zones;
            if (zones.Count() == 0)
            {
                return;
            }
            out << "<h4>Ink zones: mean coverage in per cent</h4>\n<div class=\"scroll\"><table class=\"zones\"><thead>"
                   "<tr><th>Zone</th><th>"
                << (zones.perInch ? "mm" : "pixels") << "</th>";
            for (const SideInk& ink : inks)
            {
                out << "<th>" << Swatch(ink.zones.colour) << ' ' << Escaped(ink.zones.name) << "</th>";
            }
            out << "</tr></thead><tbody>\n";
            for (std::size_t zone = 0; zone < zones.Count(); ++zone)
            {
                out << "<tr><th>" << zone + 1 << "</th><td>" << Fixed(zones.EdgeAt(zone), 1) << "&ndash;"
                    << Fixed(zones.EdgeAt(zone + 1), 1) << "</td>";
                for (const SideInk& ink : inks)
                {
                    const std::vector<double>& coverage = ink.zones.coverage;
                    out << "<td>" << (zone < coverage.size() ? Fixed(coverage[zone], 2) : "&ndash;") << "</td>";
                }
                out << "</tr>\n";
            }
            out << "</tbody></table></div>\n";
        }

        std::vector<Colour> ColoursOf(const Ppf::Surface& surface)
        {
            std::vector<std::string> names;
            for (const Ppf::Preview& preview : surface.previews)
            {
                names.insert(names.end(), preview.inks.begin(), preview.inks.end());
            }
            return InkColours(names);
        }
    }

    void ReportSides::Write(const Ppf::Surface& surface)
    {
        const std::string id = "side-" + std::to_string(++sides);
        const std::vector<Colour> colours = ColoursOf(surface);
        std::vector<SideInk> inks;
        for (const Ppf::Preview& preview : surface.previews)
        {
            MeasuredPreview measured =
                MeasurePreview(document, preview, choice.IsGiven() ? choice : UsualChoice(preview));
            KeepFirst(firstFinding, measured.findings);
            const std::vector<Ppf::Finding> notes = Observations(preview, measured);
            for (unsigned i = 0; i < preview.components; ++i)
            {
                SideInk ink = {&preview, i, {}, {}, notes, "ink-" + std::to_string(++pictures)};
                ink.zones = {
                    preview.inks[i],
                    colours[inks.size()],
                    measured.zones,
                    static_cast<double>(preview.UprightWidth()),
                    {}};
                if (!measured.inks.empty())
                {
                    ink.coverage = measured.inks[i].coverage;
                    ink.zones.coverage = std::move(measured.inks[i].zones);
                }
                inks.push_back(std::move(ink));
            }
        }
        out << "<section class=\"side\" id=\"" << id << "\">\n<h3>" << NameOf(surface.side) << "</h3>\n";
        if (inks.empty())
        {
            out << "<p class=\"soft\">No separation.</p>\n";
        }
        else
        {
            SideWriter(id, std::move(inks), out).Write(document);
        }
        out << "</section>\n";
    }

    std::string ReportSides::SwitchRules(std::size_t mostInks)
    {
        std::string rules;
        for (std::size_t i = 1; i <= mostInks; ++i)
        {
            const std::string child = ":nth-child(" + std::to_string(i) + ")";
            rules += ".overview:has(.inks tbody tr" + child + " input:not(:checked)) .stage :is(.layers,.bars)>" +
                     child + "{display:none}\n";
        }
        return rules;
    }
}
