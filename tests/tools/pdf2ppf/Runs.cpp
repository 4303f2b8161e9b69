#include "tests/tools/pdf2ppf/Runs.h"

#include "ppf/Check.h"
#include "ppf/DocumentReader.h"
#include "ppf/ScanLineReader.h"

#include <cstdlib>
#include <stdexcept>

#include <sys/stat.h>
#include <sys/wait.h>

namespace Pdf2PpfTest
{
    int RunTest::Run(const std::string& commands)
    {
        const std::string script = "pdf2ppf() { '" PDF2PPF_PROGRAM "' \"$@\"; }\nexport TMPDIR=" + temporary.Path() +
                                   " PATH=" + programs.Path() + ":$PATH\ncd " + folder.Path() + "\n( " + commands +
                                   "\n) >" + (said / "out") + " 2>" + (said / "error");
        const int status = std::system(script.c_str());
        EXPECT_TRUE(temporary.Names().empty()) << "a temporary file was left behind";
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

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

    void RunTest::StandIn(const std::string& script)
    {
        const std::string path = programs.Write("gs", "#!/bin/sh\n" + script + '\n');
        chmod(path.c_str(), S_IRWXU);
    }
}
