#include "ppfinfo/TextOutput.h"

#include "ppfinfo/Headings.h"
#include "ppfinfo/MeasuredPreview.h"
#include "ppfinfo/Observations.h"
#include "ppfinfo/Text.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace PpfInfo
{
    namespace
    {
        /// A bar of 25 characters for 100 per cent; any ink at all shows.
        std::string Bar(double coverage)
        {
            constexpr double PerCharacter = 4;
            const auto length = static_cast<std::size_t>(std::ceil(coverage / PerCharacter));
            return std::string(length, '#');
        }

        std::string Plural(std::size_t number, const std::string& noun)
        {
            return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
        }

        class TextWriter
        {
        public:
            TextWriter(const Ppf::Document& theDocument, std::ostream& theOut)
                : document(theDocument)
                , out(theOut)
                , unusual(Observations(theDocument))
            {
            }

            void WriteSheet(std::size_t position)
            {
                const Ppf::Sheet& sheet = document.sheets[position];
                out << '\n' << SheetHeading(sheet, position) << '\n';
                WriteEntry("job", sheet.JobName());
                WriteEntry("extent", sheet.Extent());
                for (const Ppf::Entry& entry : sheet.Parameters())
                {
                    WriteEntry(ToPrintable(entry.key), entry.value);
                }
                for (const Ppf::Surface& surface : sheet.surfaces)
                {
                    WriteSurface(surface);
                }
            }

            void WriteUnusual() { WriteFindings("Unusual", unusual, out); }

            const std::optional<Ppf::Finding>& FirstFinding() const { return firstFinding; }

        private:
            void WriteEntry(const std::string& name, std::string_view value)
            {
                constexpr std::size_t NameWidth = 10;
                out << "  " << PaddedRight(name, NameWidth) << "  " << ToPrintable(value) << '\n';
            }

            void WriteSurface(const Ppf::Surface& surface)
            {
                std::size_t inks = 0;
                std::size_t nameWidth = 0;
                for (const Ppf::Preview& preview : surface.previews)
                {
                    inks += preview.inks.size();
                    for (const std::string& name : preview.inks)
                    {
                        nameWidth = std::max(nameWidth, WidthOf(ToPrintable(name)));
                    }
                }
                out << "  " << NameOf(surface.side) << ": " << Plural(inks, "ink");
                if (surface.previews.empty())
                {
                    out << '\n';
                    return;
                }
                const Ppf::Preview& first = surface.previews.front();
                out << ", " << SizeText(first) << '\n';
                std::size_t position = 0;
                for (const Ppf::Preview& preview : surface.previews)
                {
                    const MeasuredPreview measured = MeasurePreview(document, preview, {});
                    KeepFirst(firstFinding, measured.findings);
                    const std::vector<Ppf::Finding> seen = Observations(preview, measured);
                    unusual.insert(unusual.end(), seen.begin(), seen.end());
                    for (std::size_t i = 0; i < preview.inks.size(); ++i)
                    {
                        const std::string coverage =
                            measured.inks.empty() ? "damaged" : Fixed(measured.inks[i].coverage, 2) + " %";
                        out << "  " << PaddedLeft(std::to_string(++position), 4) << "  "
                            << PaddedRight(ToPrintable(preview.inks[i]), nameWidth) << PaddedLeft(coverage, 11) << "  "
                            << PaddedRight(measured.inks.empty() ? "" : Bar(measured.inks[i].coverage), 25) << "  "
                            << Plural(preview.data.size(), "byte") << ", " << FilterText(preview) << '\n';
                    }
                }
            }

            const Ppf::Document& document;
            std::ostream& out;
            std::vector<Ppf::Finding> unusual;
            std::optional<Ppf::Finding> firstFinding;
        };
    }

    std::optional<Ppf::Finding> WriteText(const std::string& fileName, const Ppf::Document& document, std::ostream& out)
    {
        out << ToPrintable(fileName) << ": print production file, version " << ToPrintable(document.version) << ", "
            << Plural(document.sheets.size(), "sheet") << ", " << Plural(document.bytes.size(), "byte") << '\n';
        TextWriter writer(document, out);
        for (std::size_t i = 0; i < document.sheets.size(); ++i)
        {
            writer.WriteSheet(i);
        }
        writer.WriteUnusual();
        return writer.FirstFinding();
    }
}
