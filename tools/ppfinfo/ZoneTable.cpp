#include "ppfinfo/ZoneTable.h"

#include "ppfinfo/Headings.h"
#include "ppfinfo/MeasuredPreview.h"
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
            ZoneTableWriter(const Ppf::Document& theDocument, const ZoneChoice& theChoice, std::ostream& theOut)
                : document(theDocument)
                , choice(theChoice)
                , out(theOut)
            {
            }

            void WriteSurface(const Ppf::Surface& surface)
            {
                std::vector<Column> columns;
                // The zones of the separation that has most of them: as a rule all have the same.
                Zones most;
                for (const Ppf::Preview& preview : surface.previews)
                {
                    const MeasuredPreview measured = MeasurePreview(document, preview, choice);
                    KeepFirst(firstFinding, measured.findings);
                    most = measured.zones.Count() > most.Count() ? measured.zones : most;
                    for (std::size_t i = 0; i < preview.inks.size(); ++i)
                    {
                        columns.push_back(
                            {ToPrintable(preview.inks[i]),
                             measured.inks.empty() ? std::vector<double>() : measured.inks[i].zones});
                    }
                }
                if (most.Count() > 0)
                {
                    WriteTable(columns, most);
                }
            }

            const std::optional<Ppf::Finding>& FirstFinding() const { return firstFinding; }

        private:
            void WriteTable(const std::vector<Column>& columns, const Zones& zones)
            {
                out << "zone" << PaddedLeft(zones.perInch ? "from mm" : "from px", 10)
                    << PaddedLeft(zones.perInch ? "to mm" : "to px", 10);
                for (const Column& column : columns)
                {
                    out << "  " << PaddedLeft(column.name, ColumnWidth(column));
                }
                out << '\n';
                for (std::size_t zone = 0; zone < zones.Count(); ++zone)
                {
                    out << PaddedLeft(std::to_string(zone + 1), 4) << PaddedLeft(Fixed(zones.EdgeAt(zone), 1), 10)
                        << PaddedLeft(Fixed(zones.EdgeAt(zone + 1), 1), 10);
                    for (const Column& column : columns)
                    {
                        const std::string value = zone < column.zones.size() ? Fixed(column.zones[zone], 2) : "-";
                        out << "  " << PaddedLeft(value, ColumnWidth(column));
                    }
                    out << '\n';
                }
            }

            const Ppf::Document& document;
            const ZoneChoice& choice;
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
        WriteFindings("Unusual", SheetsBeyondZones(document, zones), out);
        return writer.FirstFinding();
    }
}
