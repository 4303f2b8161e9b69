// One file, one form of output, and one line for the first fault.
#include "ppfinfo/Run.h"

#include "ppf/Check.h"
#include "ppf/DocumentReader.h"
#include "ppf/FileMap.h"
#include "ppfinfo/Extract.h"
#include "ppfinfo/HtmlReport.h"
#include "ppfinfo/InkMeasure.h"
#include "ppfinfo/JsonOutput.h"
#include "ppfinfo/OutputFile.h"
#include "ppfinfo/Text.h"
#include "ppfinfo/TextOutput.h"
#include "ppfinfo/ZoneTable.h"

#include <exception>
#include <filesystem>
#include <fstream>
#include <new>
#include <stdexcept>
#include <string_view>
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
            constexpr std::string_view Mark = "%!PS";
            std::ifstream file(path, std::ios::binary);
            std::string begin(Mark.size(), '\0');
            return file.read(begin.data(), static_cast<std::streamsize>(begin.size())) && begin == Mark;
        }

        std::optional<Ppf::Finding> WriteReportFile(const Options& options, const Ppf::Document& document)
        {
            // The place of the page is easily forgotten, and the next argument taken for it.
            if (std::filesystem::is_regular_file(options.reportTo) && IsPostScript(options.reportTo))
            {
                throw std::runtime_error(
                    "--report: " + options.reportTo +
                    " is a PostScript or PPF file, which the page would replace; name the page, as in report.html");
            }
            OutputFile file(options.reportTo);
            auto fault = WriteHtmlReport(options.file, document, options.zones, file.Stream());
            file.Commit();
            return fault;
        }

        /// The first fault in the order of the file, or nothing.
        std::optional<Ppf::Finding> Write(const Options& options, const Ppf::Document& document, std::ostream& out)
        {
            if (options.check)
            {
                return WriteFindings(document, out);
            }
            std::optional<Ppf::Finding> fault = !options.extractTo.empty()
                                                    ? ExtractPictures(document, options.extractTo)
                                                : !options.reportTo.empty() ? WriteReportFile(options, document)
                                                : options.json              ? WriteJson(document, options.zones, out)
                                                : options.zones.IsGiven() ? WriteZoneTable(document, options.zones, out)
                                                                          : WriteText(options.file, document, out);
            KeepFirst(fault, document.damage);
            return fault;
        }
    }

    ExitStatus Run(const Options& options, std::ostream& out, std::ostream& errors)
    {
        const auto fail = [&](const std::string& text)
        {
            out.flush();
            errors << "ppfinfo: error: " << text << '\n';
            return Failure;
        };
        try
        {
            const Ppf::FileMap file(options.file == "-" ? "/dev/stdin" : options.file);
            const Ppf::Document document = Ppf::ReadDocument(file.Bytes());
            // Of a file that does not begin as one there is nothing to show.
            if (document.version.empty() && document.damage && !options.check)
            {
                return fail(ToPrintable(options.file) + ": " + At(*document.damage));
            }
            const std::optional<Ppf::Finding> fault = Write(options, document, out);
            out.flush();
            if (!out)
            {
                return fail("cannot write to standard output");
            }
            return fault ? fail(ToPrintable(options.file) + ": " + At(*fault)) : Success;
        }
        catch (const std::bad_alloc&)
        {
            return fail(ToPrintable(options.file) + ": not enough memory for a preview of this size");
        }
        catch (const std::exception& error)
        {
            return fail(ToPrintable(error.what()));
        }
    }
}
