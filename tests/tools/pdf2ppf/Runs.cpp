#include "tests/tools/pdf2ppf/Runs.h"

#include "ppf/Check.h"
#include "ppf/DocumentReader.h"
#include "ppf/ScanLineReader.h"

#include <stdexcept>

namespace Pdf2PpfTest
{
    std::string RunTest::Inks(const std::string& name) const
    {
        const std::string bytes = folder.Read(name);
        const Ppf::Document document = Ppf::ReadDocument(bytes);
        EXPECT_TRUE(Ppf::Check(document, Ppf::CheckDepth::Everything).empty());
        std::string text;
        for (const Ppf::Sheet& sheet : document.sheets)
        {
            text += (text.empty() ? sheet.JobName() + "; " : "; ") + sheet.SheetName();
            const char* separator = " ";
            for (const Ppf::Surface& surface : sheet.surfaces)
            {
                text += separator + std::string(Ppf::NameOf(surface.side)) + ':';
                for (const Ppf::Preview& preview : surface.previews)
                {
                    text += ' ' + preview.inks.at(0);
                }
                separator = "; ";
            }
        }
        return text;
    }

    Preview RunTest::PreviewOf(const std::string& name, const std::string& ink, int index) const
    {
        const std::string bytes = folder.Read(name);
        const Ppf::Document document = Ppf::ReadDocument(bytes);
        for (const Ppf::Sheet& sheet : document.sheets)
        {
            for (const Ppf::Surface& surface : sheet.surfaces)
            {
                for (const Ppf::Preview& found : surface.previews)
                {
                    if (found.inks.at(0) != ink || index-- > 0)
                    {
                        continue;
                    }
                    const Ppf::Resolution resolution = found.resolution.value();
                    Preview preview{found.width, found.height, resolution.x, resolution.y, {}};
                    Ppf::ScanLineReader reader(document, found);
                    while (const unsigned char* const row = reader.Next())
                    {
                        preview.pixels.insert(preview.pixels.end(), row, row + found.width);
                    }
                    return preview;
                }
            }
        }
        throw std::runtime_error(name + " holds no " + ink);
    }
}
