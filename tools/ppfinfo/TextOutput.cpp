// Lines in columns, sheet by sheet.
#include "ppfinfo/TextOutput.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "ppfinfo/Headings.h"
#include "ppfinfo/InkMeasure.h"
#include "ppfinfo/Observations.h"
#include "ppfinfo/Text.h"

namespace ppfinfo
{
    namespace
    {
        /// A bar of 25 characters for 100 per cent; any ink at all shows.
        std::string Bar(double coverage)
        {
            constexpr double perCharacter = 4;
            const auto length = static_cast<std::size_t>(std::ceil(coverage / perCharacter));
            return std::string(length, '#');
        }

        std::string Plural(std::size_t number, const std::string& noun)
        {
            return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
        }

        class TextWriter
        {
        public:
            TextWriter(const ppf::Document& document, std::ostream& out)
                : m_document(document)
                , m_out(out)
                , m_unusual(Observations(document))
            {
            }

            void WriteSheet(std::size_t position)
            {
                const ppf::Sheet& sheet = m_document.sheets[position];
                m_out << '\n' << SheetHeading(sheet, position) << '\n';
                WriteEntry("job", sheet.JobName());
                WriteEntry("extent", sheet.Extent());
                for (const ppf::Entry& entry : sheet.Parameters())
                {
                    WriteEntry(ToPrintable(entry.key), entry.value);
                }
                for (const ppf::Surface& surface : sheet.surfaces)
                {
                    WriteSurface(surface);
                }
            }

            void WriteUnusual()
            {
                if (m_unusual.empty())
                {
                    return;
                }
                m_out << "\nUnusual\n";
                for (const ppf::Finding& finding : m_unusual)
                {
                    m_out << "  byte " << finding.offset << ": " << ToPrintable(finding.text) << '\n';
                }
            }

            const std::optional<ppf::Finding>& Fault() const { return m_fault; }

        private:
            void WriteEntry(const std::string& name, std::string_view value)
            {
                constexpr std::size_t nameWidth = 10;
                m_out << "  " << PaddedRight(name, nameWidth) << "  " << ToPrintable(value) << '\n';
            }

            void WriteSurface(const ppf::Surface& surface)
            {
                std::size_t inks = 0;
                std::size_t nameWidth = 0;
                for (const ppf::Preview& preview : surface.previews)
                {
                    inks += preview.inks.size();
                    for (const std::string& name : preview.inks)
                    {
                        nameWidth = std::max(nameWidth, WidthOf(ToPrintable(name)));
                    }
                }
                m_out << "  " << NameOf(surface.side) << ": " << Plural(inks, "ink");
                if (surface.previews.empty())
                {
                    m_out << '\n';
                    return;
                }
                const ppf::Preview& first = surface.previews.front();
                m_out << ", " << SizeText(first) << '\n';
                std::size_t position = 0;
                for (const ppf::Preview& preview : surface.previews)
                {
                    const InkMeasure measure = MeasureInks(m_document, preview);
                    KeepFirst(m_fault, measure.fault);
                    const std::vector<ppf::Finding> seen = Observations(preview, measure);
                    m_unusual.insert(m_unusual.end(), seen.begin(), seen.end());
                    for (std::size_t i = 0; i < preview.inks.size(); ++i)
                    {
                        const std::string coverage =
                            measure.inks.empty() ? "damaged" : Fixed(measure.inks[i].Coverage(), 2) + " %";
                        m_out << "  " << PaddedLeft(std::to_string(++position), 4) << "  "
                              << PaddedRight(ToPrintable(preview.inks[i]), nameWidth) << PaddedLeft(coverage, 11)
                              << "  " << PaddedRight(measure.inks.empty() ? "" : Bar(measure.inks[i].Coverage()), 25)
                              << "  " << Plural(preview.data.size(), "byte") << ", " << FilterText(preview) << '\n';
                    }
                }
            }

            const ppf::Document& m_document;
            std::ostream& m_out;
            std::vector<ppf::Finding> m_unusual;
            std::optional<ppf::Finding> m_fault;
        };
    }

    std::optional<ppf::Finding> WriteText(const std::string& fileName, const ppf::Document& document, std::ostream& out)
    {
        out << ToPrintable(fileName) << ": print production file, version " << ToPrintable(document.version) << ", "
            << Plural(document.sheets.size(), "sheet") << ", " << Plural(document.bytes.size(), "byte") << '\n';
        TextWriter writer(document, out);
        for (std::size_t i = 0; i < document.sheets.size(); ++i)
        {
            writer.WriteSheet(i);
        }
        writer.WriteUnusual();
        return writer.Fault();
    }
}
