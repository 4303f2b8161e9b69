#include "ppfinfo/Headings.h"

#include "ppfinfo/Text.h"
#include "ppfinfo/Zones.h"

namespace PpfInfo
{
    std::string SheetHeading(const Ppf::Sheet& sheet, std::size_t position)
    {
        const std::string name = sheet.SheetName();
        return "Sheet " + std::to_string(position + 1) + (name.empty() ? "" : ", \"" + ToPrintable(name) + "\"");
    }

    std::string SizeText(const Ppf::Preview& preview)
    {
        const std::uint64_t width = preview.UprightWidth();
        const std::uint64_t height = preview.UprightHeight();
        std::string text = std::to_string(width) + " x " + std::to_string(height) + " pixels";
        if (const std::optional<Ppf::Resolution> resolution = preview.UprightResolution())
        {
            const double up = Millimetres(static_cast<double>(height), resolution->y);
            const double across = Millimetres(static_cast<double>(width), resolution->x);
            const bool isSquare = resolution->x == resolution->y;
            text += ", " + Fixed(across, 1) + " x " + Fixed(up, 1) + " mm, " + Shortest(resolution->x) +
                    (isSquare ? "" : " x " + Shortest(resolution->y)) + " ppi";
        }
        return text;
    }

    std::string FilterText(const Ppf::Preview& preview)
    {
        return ToPrintable(preview.compressionName) + ", " + ToPrintable(preview.encodingName);
    }

    std::string FindingText(const Ppf::Finding& finding)
    {
        return "byte " + std::to_string(finding.offset) + ": " + ToPrintable(finding.text);
    }

    void WriteFindings(const std::string& heading, const std::vector<Ppf::Finding>& findings, std::ostream& out)
    {
        out << (findings.empty() ? "" : '\n' + heading + '\n');
        for (const Ppf::Finding& finding : findings)
        {
            out << "  " << FindingText(finding) << '\n';
        }
    }
}
