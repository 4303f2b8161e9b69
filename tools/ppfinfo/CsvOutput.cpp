#include "ppfinfo/CsvOutput.h"

#include "ppfinfo/MeasuredPreview.h"
#include "ppfinfo/Text.h"

#include <string>

namespace PpfInfo
{
    namespace
    {
        constexpr const char* LineEnd = "\r\n";
        constexpr int Digits = 4;

        /// A text as a field: between quotes where it holds what separates fields or lines. Other control characters, which a
        /// field cannot hold, as \xNN.
        std::string Field(const std::string& text)
        {
            constexpr const char* Quoted = ",\r\n\"";
            const std::string utf8 = ToUtf8(text);
            std::string field;
            std::size_t begin = 0;
            for (std::size_t end = utf8.find_first_of(Quoted); end != utf8.npos;
                 end = utf8.find_first_of(Quoted, begin))
            {
                field += ToPrintable(utf8.substr(begin, end - begin));
                field += utf8[end] == '"' ? "\"\"" : std::string(1, utf8[end]);
                begin = end + 1;
            }
            field += ToPrintable(utf8.substr(begin));
            return utf8.find_first_of(Quoted) == utf8.npos ? field : '"' + field + '"';
        }

        /// The lines of one ink, each after what says whose they are.
        void WriteInk(const std::string& begin, const Zones& zones, const MeasuredInk* ink, std::ostream& out)
        {
            const auto place = [&](std::size_t edge)
            { return zones.perInch ? Fixed(zones.EdgeAt(edge), Digits) : std::string(); };
            for (std::size_t zone = 0; zone < zones.Count(); ++zone)
            {
                out << begin << zone + 1 << ',' << place(zone) << ',' << place(zone + 1) << ','
                    << (ink == nullptr ? "" : Fixed(ink->zones[zone], Digits)) << LineEnd;
            }
        }
    }

    std::optional<Ppf::Finding> WriteCsv(const Ppf::Document& document, const ZoneChoice& choice, std::ostream& out)
    {
        std::optional<Ppf::Finding> firstFinding;
        out << "sheet,sheet name,side,separation,zone,from mm,to mm,coverage %" << LineEnd;
        for (std::size_t i = 0; i < document.sheets.size(); ++i)
        {
            const std::string sheet = std::to_string(i + 1) + ',' + Field(document.sheets[i].SheetName()) + ',';
            for (const Ppf::Surface& surface : document.sheets[i].surfaces)
            {
                const std::string side = sheet + std::string(NameOf(surface.side)) + ',';
                for (const Ppf::Preview& preview : surface.previews)
                {
                    const MeasuredPreview measured =
                        MeasurePreview(document, preview, choice.IsGiven() ? choice : UsualChoice(preview));
                    KeepFirst(firstFinding, measured.findings);
                    for (std::size_t ink = 0; ink < preview.inks.size(); ++ink)
                    {
                        WriteInk(
                            side + Field(preview.inks[ink]) + ',', measured.zones,
                            measured.inks.empty() ? nullptr : &measured.inks[ink], out);
                    }
                }
            }
        }
        return firstFinding;
    }
}
