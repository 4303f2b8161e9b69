#include "ppfinfo/ZoneTable.h"

#include "ppfinfo/Headings.h"
#include "ppfinfo/InkMeasure.h"
#include "ppfinfo/Text.h"

#include <algorithm>
#include <string>
#include <vector>

namespace PpfInfo
{
    namespace
    {
        struct Column
        {
            std::string name;
            std::vector<double> zones;
        };

        constexpr std::size_t NarrowestColumn = 7;
        constexpr std::size_t WidestColumn = 24;

        std::size_t ColumnWidth(const Column& column)
        {
            return std::clamp(WidthOf(column.name), NarrowestColumn, WidestColumn);
        }

        class ZoneTableWriter
        {
        public:
            ZoneTableWriter(const Ppf::Document& theDocument, const ZoneChoice& theZones, std::ostream& theOut)
                : document(theDocument)
                , zones(theZones)
                , out(theOut)
            {
            }

            void WriteSurface(const Ppf::Surface& surface)
            {
                std::vector<Column> columns;
                // The zones of the separation that has most of them: as a rule all have the same.
                const Ppf::Preview* widest = nullptr;
                std::vector<double> edges;
                for (const Ppf::Preview& preview : surface.previews)
                {
                    const std::vector<double> own = ZoneEdges(preview, zones, firstFinding);
                    if (own.size() > edges.size())
                    {
                        edges = own;
                        widest = &preview;
                    }
                    const InkMeasure measure = MeasureInks(document, preview);
                    KeepFirst(firstFinding, measure.finding);
                    for (std::size_t i = 0; i < preview.inks.size(); ++i)
                    {
                        columns.push_back(
                            {ToPrintable(preview.inks[i]),
                             measure.inks.empty() ? std::vector<double>() : measure.inks[i].Zones(own)});
                    }
                }
                if (widest != nullptr)
                {
                    WriteTable(columns, edges, *widest);
                }
            }

            const std::optional<Ppf::Finding>& FirstFinding() const { return firstFinding; }

        private:
            void WriteTable(
                const std::vector<Column>& columns, const std::vector<double>& edges, const Ppf::Preview& preview)
            {
                const std::optional<Ppf::Resolution> resolution = preview.UprightResolution();
                out << "zone" << PaddedLeft(resolution ? "from mm" : "from px", 10)
                    << PaddedLeft(resolution ? "to mm" : "to px", 10);
                for (const Column& column : columns)
                {
                    out << "  " << PaddedLeft(column.name, ColumnWidth(column));
                }
                out << '\n';
                const auto place = [&](double edge)
                { return PaddedLeft(Fixed(resolution ? Millimetres(edge, resolution->x) : edge, 1), 10); };
                for (std::size_t zone = 0; zone + 1 < edges.size(); ++zone)
                {
                    out << PaddedLeft(std::to_string(zone + 1), 4) << place(edges[zone]) << place(edges[zone + 1]);
                    for (const Column& column : columns)
                    {
                        const std::string value = zone < column.zones.size() ? Fixed(column.zones[zone], 2) : "-";
                        out << "  " << PaddedLeft(value, ColumnWidth(column));
                    }
                    out << '\n';
                }
            }

            const Ppf::Document& document;
            const ZoneChoice& zones;
            std::ostream& out;
            std::optional<Ppf::Finding> firstFinding;
        };
    }

    std::optional<Ppf::Finding>
    WriteZoneTable(const Ppf::Document& document, const ZoneChoice& zones, std::ostream& out)
    {
        ZoneTableWriter writer(document, zones, out);
        const char* gap = "";
        for (std::size_t i = 0; i < document.sheets.size(); ++i)
        {
            for (const Ppf::Surface& surface : document.sheets[i].surfaces)
            {
                out << gap << SheetHeading(document.sheets[i], i) << ", " << NameOf(surface.side)
                    << ": ink coverage per zone in per cent\n";
                writer.WriteSurface(surface);
                gap = "\n";
            }
        }
        return writer.FirstFinding();
    }
}
