#include "ppfinfo/Run.h"

#include "host/InputFile.h"
#include "host/Output.h"
#include "host/Progress.h"
#include "ppf/Check.h"
#include "ppf/DocumentReader.h"
#include "ppf/Keywords.h"
#include "ppfinfo/CsvOutput.h"
#include "ppfinfo/Extract.h"
#include "ppfinfo/Headings.h"
#include "ppfinfo/HtmlReport.h"
#include "ppfinfo/InkProfiles.h"
#include "ppfinfo/JsonOutput.h"
#include "ppfinfo/MeasuredPreview.h"
#include "ppfinfo/PressDocuments.h"
#include "ppfinfo/TextOutput.h"
#include "ppfinfo/ZoneTable.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

#include <unistd.h>

namespace PpfInfo
{
    namespace
    {
        std::optional<Ppf::Finding> WriteCheck(const Ppf::Document& document, std::ostream& out)
        {
            const std::vector<Ppf::Finding> findings = Ppf::Check(document, Ppf::CheckDepth::Everything);
            for (const Ppf::Finding& finding : findings)
            {
                out << FindingText(finding) << '\n';
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

        /// Writes a file of its own by `write`, which gets its stream.
        template <class Write>
        void WriteFile(const std::string& option, const std::string& place, const Write& write)
        {
            // The place of the page is easily forgotten, and the next argument taken for it.
            if (IsPostScript(place))
            {
                throw Host::Failure(
                    option + ": " + place +
                    " is a PostScript or PPF file, which the output would replace; name the output");
            }
            Host::Output file(place, Host::Durability::OnDisk);
            write(file.Stream());
            file.Publish();
        }

        /// Zones of a width in millimetres need a resolution, and so does what is said of a press.
        void RequireResolution(const Options& options, const Ppf::Document& document)
        {
            const bool isDocument = !options.jdfTo.empty() || !options.xjdfTo.empty();
            if (!isDocument && !options.zones.IsPress() && !(options.csv && options.zones.count == 0))
            {
                return;
            }
            for (const Ppf::Sheet& sheet : document.sheets)
            {
                for (const Ppf::Surface& surface : sheet.surfaces)
                {
                    for (const Ppf::Preview& preview : surface.previews)
                    {
                        if (!preview.resolution)
                        {
                            throw Ppf::FormatError(
                                preview.offset,
                                "separation \"" + Ppf::Shown(preview.inks.front()) +
                                    "\" has no resolution, so nothing is known of its millimetres" +
                                    (isDocument ? "" : "; give the number of zones alone, with --zones"));
                        }
                    }
                }
            }
        }

        /// The first finding in the order of the file, or nothing.
        std::optional<Ppf::Finding> Write(const Options& options, const Ppf::Document& document, std::ostream& out)
        {
            RequireResolution(options, document);
            if (options.check)
            {
                return WriteCheck(document, out);
            }
            std::optional<Ppf::Finding> finding;
            if (!options.extractTo.empty())
            {
                finding = ExtractPictures(document, options.extractTo);
            }
            else if (!options.reportTo.empty())
            {
                WriteFile(
                    "--report", options.reportTo,
                    [&](std::ostream& page)
                    { finding = WriteHtmlReport(options.file, document, options.zones, page); });
            }
            else if (!options.jdfTo.empty())
            {
                const InkProfiles profiles = ReadInkProfiles(document, options.zones, NameForm::Text);
                WriteFile("--jdf", options.jdfTo, [&](std::ostream& jdf) { WriteJdf(profiles, jdf); });
            }
            else if (!options.xjdfTo.empty())
            {
                const InkProfiles profiles = ReadInkProfiles(document, options.zones, NameForm::Token);
                WriteFile("--xjdf", options.xjdfTo, [&](std::ostream& xjdf) { WriteXjdf(profiles, xjdf); });
            }
            else
            {
                finding = options.json              ? WriteJson(document, options.zones, out)
                          : options.csv             ? WriteCsv(document, options.zones, out)
                          : options.zones.IsGiven() ? WriteZoneTable(document, options.zones, out)
                                                    : WriteText(options.file, document, out);
            }
            KeepFirst(finding, document.damage);
            return finding;
        }

        /// The same, where what the file lacks for it ends the work.
        std::optional<Ppf::Finding> TryWrite(const Options& options, const Ppf::Document& document, std::ostream& out)
        {
            try
            {
                return Write(options, document, out);
            }
            catch (const Ppf::FormatError& error)
            {
                return error.AsFinding();
            }
        }

        /// Preview data that a run reads, each time that it does.
        std::uint64_t DataToRead(const Options& options, const Ppf::Document& document)
        {
            std::uint64_t bytes = 0;
            for (const Ppf::Sheet& sheet : document.sheets)
            {
                for (const Ppf::Surface& surface : sheet.surfaces)
                {
                    for (const Ppf::Preview& preview : surface.previews)
                    {
                        const std::uint64_t pictures = preview.components;
                        const std::uint64_t times = !options.extractTo.empty()  ? pictures
                                                    : !options.reportTo.empty() ? 1 + pictures
                                                                                : 1;
                        bytes += times * preview.data.size();
                    }
                }
            }
            return bytes;
        }

        /// Whether a line that says how far the run is would stand on a terminal, and not within what goes to one.
        bool IsProgressSeen(const Options& options)
        {
            const bool writesText = options.extractTo.empty() && options.reportTo.empty() && options.jdfTo.empty() &&
                                    options.xjdfTo.empty() && !options.check;
            return isatty(STDERR_FILENO) != 0 && (!writesText || isatty(STDOUT_FILENO) == 0);
        }
    }

    Host::ExitStatus Run(const Options& options, Host::DescriptorStream& out)
    {
        const Host::InputFile file(options.file == "-" ? "/dev/stdin" : options.file, Ppf::Word::Magic);
        const Ppf::Document document = Ppf::ReadDocument(file.Bytes());
        // Of a file that does not begin as one there is nothing to show.
        const bool isForeign = document.version.empty() && document.damage && !options.check;
        std::optional<Host::Progress> progress;
        if (IsProgressSeen(options))
        {
            progress.emplace(
                STDERR_FILENO, options.check ? 0 : DataToRead(options, document), "of the previews",
                std::chrono::seconds(1), &DataBytesRead);
        }
        const std::optional<Ppf::Finding> finding = isForeign ? document.damage : TryWrite(options, document, out);
        progress.reset();
        out.Finish("standard output");
        if (finding && !options.check)
        {
            throw Host::Failure(options.file + ": " + FindingText(*finding));
        }
        return finding ? Host::ExitFailed : Host::ExitDone;
    }
}
