// One table per side, with a column for each ink.
#include "ppfinfo/ZoneTable.h"

#include <algorithm>
#include <string>
#include <vector>

#include "ppfinfo/Headings.h"
#include "ppfinfo/InkMeasure.h"
#include "ppfinfo/Text.h"

namespace ppfinfo
{
    namespace
    {
        struct Column
        {
            std::string name;
            std::vector<double> zones;
        };

        constexpr std::size_t narrowestColumn = 7;
        constexpr std::size_t widestColumn = 24;

        std::size_t ColumnWidth(const Column& column)
        {
            return std::clamp(WidthOf(column.name), narrowestColumn, widestColumn);
        }

        class ZoneTableWriter
        {
        public:
            ZoneTableWriter(const ppf::Document& document, const ZoneChoice& zones, std::ostream& out)
                : m_document(document)
                , m_zones(zones)
                , m_out(out)
            {
            }

            void WriteSurface(const ppf::Surface& surface)
            {
                std::vector<Column> columns;
                // The zones of the separation that has most of them: as a rule all have the same.
                const ppf::Preview* widest = nullptr;
                std::vector<double> edges;
                for (const ppf::Preview& preview : surface.previews)
                {
                    const std::vector<double> own = ZoneEdges(preview, m_zones, m_fault);
                    if (own.size() > edges.size())
                    {
                        edges = own;
                        widest = &preview;
                    }
                    const InkMeasure measure = MeasureInks(m_document, preview);
                    KeepFirst(m_fault, measure.fault);
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

            const std::optional<ppf::Finding>& Fault() const { return m_fault; }

        private:
            void WriteTable(
                const std::vector<Column>& columns, const std::vector<double>& edges, const ppf::Preview& preview)
            {
                const std::optional<ppf::Resolution> resolution = preview.UprightResolution();
                m_out << "zone" << PaddedLeft(resolution ? "from mm" : "from px", 10)
                      << PaddedLeft(resolution ? "to mm" : "to px", 10);
                for (const Column& column : columns)
                {
                    m_out << "  " << PaddedLeft(column.name, ColumnWidth(column));
                }
                m_out << '\n';
                const auto place = [&](double edge)
                { return PaddedLeft(Fixed(resolution ? Millimetres(edge, resolution->x) : edge, 1), 10); };
                for (std::size_t zone = 0; zone + 1 < edges.size(); ++zone)
                {
                    m_out << PaddedLeft(std::to_string(zone + 1), 4) << place(edges[zone]) << place(edges[zone + 1]);
                    for (const Column& column : columns)
                    {
                        const std::string value = zone < column.zones.size() ? Fixed(column.zones[zone], 2) : "-";
                        m_out << "  " << PaddedLeft(value, ColumnWidth(column));
                    }
                    m_out << '\n';
                }
            }

            const ppf::Document& m_document;
            const ZoneChoice& m_zones;
            std::ostream& m_out;
            std::optional<ppf::Finding> m_fault;
        };
    }

    std::optional<ppf::Finding>
    WriteZoneTable(const ppf::Document& document, const ZoneChoice& zones, std::ostream& out)
    {
        ZoneTableWriter writer(document, zones, out);
        const char* gap = "";
        for (std::size_t i = 0; i < document.sheets.size(); ++i)
        {
            for (const ppf::Surface& surface : document.sheets[i].surfaces)
            {
                out << gap << SheetHeading(document.sheets[i], i) << ", " << NameOf(surface.side)
                    << ": ink coverage per zone in per cent\n";
                writer.WriteSurface(surface);
                gap = "\n";
            }
        }
        return writer.Fault();
    }
}
