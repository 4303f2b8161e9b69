#include "ppfinfo/HtmlReport.h"

#include "ppfinfo/Headings.h"
#include "ppfinfo/Html.h"
#include "ppfinfo/Observations.h"
#include "ppfinfo/ReportSide.h"
#include "ppfinfo/Text.h"

#include <algorithm>
#include <vector>

namespace PpfInfo
{
    namespace
    {
        std::size_t MostInksOfASide(const Ppf::Document& document)
        {
            std::size_t most = 0;
            for (const Ppf::Sheet& sheet : document.sheets)
            {
                for (const Ppf::Surface& surface : sheet.surfaces)
                {
                    std::size_t inks = 0;
                    for (const Ppf::Preview& preview : surface.previews)
                    {
                        inks += preview.components;
                    }
                    most = std::max(most, inks);
                }
            }
            return most;
        }

        class ReportWriter
        {
        public:
            ReportWriter(const Ppf::Document& theDocument, const ZoneChoice& theChoice, std::ostream& theOut)
                : document(theDocument)
                , choice(theChoice)
                , out(theOut)
                , sides(theDocument, theChoice, theOut)
            {
            }

            void Write(const std::string& fileName);

            const std::optional<Ppf::Finding>& FirstFinding() const { return sides.FirstFinding(); }

        private:
            void WriteHead(const std::string& fileName);
            void WriteUnusual();
            void WriteSheet(std::size_t position);
            void WriteEntries(const Ppf::Sheet& sheet);

            const Ppf::Document& document;
            const ZoneChoice& choice;
            std::ostream& out;
            ReportSides sides;
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
                << title << "</title>\n<style>" << ReportStyle() << ReportSides::SwitchRules(MostInksOfASide(document))
                << "</style>\n</head>\n<body>\n<header>\n<h1>" << title << "</h1>\n<div class=\"soft\">"
                << Escaped(fileName) << " &middot; print production file, version " << Escaped(document.version)
                << " &middot; " << sheets.size() << (sheets.size() == 1 ? " sheet" : " sheets") << " &middot; "
                << document.bytes.size() << " bytes</div>\n";
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
            const std::vector<Ppf::Finding> beyond = SheetsBeyondZones(document, choice);
            findings.insert(findings.end(), beyond.begin(), beyond.end());
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
                sides.Write(surface);
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
    }

    std::optional<Ppf::Finding> WriteHtmlReport(
        const std::string& fileName, const Ppf::Document& document, const ZoneChoice& zones, std::ostream& out)
    {
        ReportWriter writer(document, zones, out);
        writer.Write(fileName);
        return writer.FirstFinding();
    }
}
