#include "ppfinfo/Run.h"

#include "host/InputFile.h"
#include "host/Output.h"
#include "ppf/Check.h"
#include "ppf/DocumentReader.h"
#include "ppf/Keywords.h"
#include "ppfinfo/Extract.h"
#include "ppfinfo/HtmlReport.h"
#include "ppfinfo/InkMeasure.h"
#include "ppfinfo/JsonOutput.h"
#include "ppfinfo/Text.h"
#include "ppfinfo/TextOutput.h"
#include "ppfinfo/ZoneTable.h"

#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

namespace PpfInfo
{
    namespace
    {
        std::string At(const Ppf::Finding& finding)
        {
            return "byte " + std::to_string(finding.offset) + ": " + ToPrintable(finding.text);
        }

        std::optional<Ppf::Finding> WriteFindings(const Ppf::Document& document, std::ostream& out)
        {
            const std::vector<Ppf::Finding> findings = Ppf::Check(document, Ppf::CheckDepth::Everything);
            for (const Ppf::Finding& finding : findings)
            {
                out << At(finding) << '\n';
            }
            return findings.empty() ? std::nullopt : std::optional<Ppf::Finding>(findings.front());
        }

        /// Whether the file at `path` begins as PostScript files do.
        bool IsPostScript(const std::string& path)
        {
            std::error_code none;
            if (!std::filesystem::is_regular_file(path, none))
            {
                return false;
            }
            std::ifstream file(path, std::ios::binary);
            std::string begin(Ppf::Word::Magic.size(), '\0');
            return file.read(begin.data(), static_cast<std::streamsize>(begin.size())) && begin == Ppf::Word::Magic;
        }

        std::optional<Ppf::Finding> WriteReportFile(const Options& options, const Ppf::Document& document)
        {
            // The place of the page is easily forgotten, and the next argument taken for it.
            if (IsPostScript(options.reportTo))
            {
                throw Host::Failure(
                    "--report: " + options.reportTo +
                    " is a PostScript or PPF file, which the page would replace; name the page, as in report.html");
            }
            Host::Output file(options.reportTo, Host::Durability::OnDisk);
            std::optional<Ppf::Finding> finding = WriteHtmlReport(options.file, document, options.zones, file.Stream());
            file.Publish();
            return finding;
        }

        /// The first finding in the order of the file, or nothing.
        std::optional<Ppf::Finding> Write(const Options& options, const Ppf::Document& document, std::ostream& out)
        {
            if (options.check)
            {
                return WriteFindings(document, out);
            }
            std::optional<Ppf::Finding> finding =
                !options.extractTo.empty()  ? ExtractPictures(document, options.extractTo)
                : !options.reportTo.empty() ? WriteReportFile(options, document)
                : options.json              ? WriteJson(document, options.zones, out)
                : options.zones.IsGiven()   ? WriteZoneTable(document, options.zones, out)
                                            : WriteText(options.file, document, out);
            KeepFirst(finding, document.damage);
            return finding;
        }
    }

    Host::ExitStatus Run(const Options& options, Host::DescriptorStream& out)
    {
        const Host::InputFile file(options.file == "-" ? "/dev/stdin" : options.file, Ppf::Word::Magic);
        const Ppf::Document document = Ppf::ReadDocument(file.Bytes());
        // Of a file that does not begin as one there is nothing to show.
        const bool isForeign = document.version.empty() && document.damage && !options.check;
        const std::optional<Ppf::Finding> finding = isForeign ? document.damage : Write(options, document, out);
        out.Finish("standard output");
        if (finding && !options.check)
        {
            throw Host::Failure(options.file + ": " + At(*finding));
        }
        return finding ? Host::ExitFailed : Host::ExitDone;
    }
}
