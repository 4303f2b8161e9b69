#include "ppfinfo/Options.h"

#include "host/Number.h"
#include "host/ProgramOptions.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace PpfInfo
{
    namespace
    {
        std::string CheckPlace(const std::string& text)
        {
            return text.empty() ? "needs a place to write to" : "";
        }

        /// What the options ask for that cannot be had together, or nothing.
        std::string Contradiction(const Options& options)
        {
            const std::array<bool, 7> outputs = {options.json,
                                                 options.check,
                                                 options.csv,
                                                 !options.extractTo.empty(),
                                                 !options.reportTo.empty(),
                                                 !options.jdfTo.empty(),
                                                 !options.xjdfTo.empty()};
            if (std::count(outputs.begin(), outputs.end(), true) > 1)
            {
                return "only one of --json, --check, --csv, --extract, --report, --jdf and --xjdf can be asked for";
            }
            if (options.zones.offset && !options.zones.IsPress())
            {
                return "--zone-offset is about a press: give --zones and --zone-width, too";
            }
            if (options.zones.IsGiven() && (options.check || !options.extractTo.empty()))
            {
                return "ink zones are not part of what --check and --extract give";
            }
            return "";
        }

        std::string CheckCount(const std::string& text)
        {
            const auto count = Host::NumberOf<std::uint64_t>(text);
            const bool fits = count && *count >= 1 && *count <= MostZones;
            return fits ? "" : "needs a number of zones from 1 to " + std::to_string(MostZones);
        }

        std::string CheckLength(const std::string& text)
        {
            return ParseLength(text).value_or(0) > 0
                       ? ""
                       : "needs a length above 0 with its unit, as in 32.5mm (mm, cm, inch or point)";
        }

        std::string CheckOffset(const std::string& text)
        {
            return ParseLength(text) ? "" : "needs a length with its unit, as in -12.5mm (mm, cm, inch or point)";
        }

        constexpr char Description[] =
            "Looks into a print production (PPF) file: what it holds, whether it is well formed, and how much "
            "ink it asks for.";
        constexpr char Usage[] =
            "Usage: ppfinfo [ZONES] [--json | --csv] FILE.ppf\n"
            "       ppfinfo [ZONES] --report OUT.html | --jdf OUT.jdf | --xjdf OUT.xjdf FILE.ppf\n"
            "       ppfinfo --check FILE.ppf\n"
            "       ppfinfo --extract DIR FILE.ppf\n"
            "ZONES: --zones N | --zone-width WIDTH | --zones N --zone-width WIDTH [--zone-offset LENGTH]\n";
        constexpr char Footer[] =
            "Example:\n  ppfinfo --report cover.html --zone-width 32.5mm cover.ppf\n\n"
            "Exit status: 0 nothing is wrong with what was read, 1 the file is damaged or cannot be read, or "
            "output cannot\n"
            "be written, 2 the command line is wrong.";
    }

    CommandLine ReadCommandLine(int argc, const char* const* argv)
    {
        Host::ProgramOptions options("ppfinfo", SHEETVANE_VERSION, Description, Usage, Footer);
        const CLI::Option* const file = options.Add("FILE.ppf", "", "The file to look into, - for standard input");
        const CLI::Option* const json = options.AddFlag("--json", "Write what the file holds as JSON");
        const CLI::Option* const check =
            options.AddFlag("--check", "Say whether the file is well formed, by exit status and findings");
        const CLI::Option* const extract =
            options.Add("--extract", "DIR", "Write each separation's preview as PNG into this folder")
                ->check(CLI::Validator(CheckPlace, ""));
        const CLI::Option* const report =
            options.Add("--report", "OUT.html", "Write a page with pictures and ink zones for a browser")
                ->check(CLI::Validator(CheckPlace, ""));
        const CLI::Option* const csv = options.AddFlag("--csv", "Write the ink zones as CSV");
        const CLI::Option* const jdf = options.Add("--jdf", "OUT.jdf", "Write the ink zones as a JDF 1.5 document")
                                           ->check(CLI::Validator(CheckPlace, ""));
        const CLI::Option* const xjdf =
            options.Add("--xjdf", "OUT.xjdf", "Write the ink zones as an XJDF 2.1 document")
                ->check(CLI::Validator(CheckPlace, ""));
        const CLI::Option* const zones = options.Add("--zones", "N", "Mean ink coverage of each of N equal zones")
                                             ->check(CLI::Validator(CheckCount, ""));
        const CLI::Option* const zoneWidth =
            options
                .Add(
                    "--zone-width", "WIDTH",
                    "The same with zones of this width, a number with mm, cm, inch or point; with --zones, the N zones "
                    "of this width of a press, the sheet in their middle")
                ->check(CLI::Validator(CheckLength, ""));
        const CLI::Option* const zoneOffset = options
                                                  .Add(
                                                      "--zone-offset", "LENGTH",
                                                      "Of a press: how far right of zone 1's left edge the sheet's "
                                                      "left edge lies, in place of the middle")
                                                  ->check(CLI::Validator(CheckOffset, ""));

        CommandLine line;
        line.answer = options.Parse(argc, argv);
        if (!line.answer.empty())
        {
            return line;
        }
        Options& given = line.options;
        given.file = Host::TextOf(file);
        given.json = !json->empty();
        given.check = !check->empty();
        given.csv = !csv->empty();
        given.extractTo = Host::TextOf(extract);
        given.reportTo = Host::TextOf(report);
        given.jdfTo = Host::TextOf(jdf);
        given.xjdfTo = Host::TextOf(xjdf);
        given.zones.count = Host::NumberOf<std::uint64_t>(Host::TextOf(zones)).value_or(0);
        given.zones.width = ParseLength(Host::TextOf(zoneWidth)).value_or(0);
        given.zones.offset = ParseLength(Host::TextOf(zoneOffset));
        const std::string problem = file->empty() ? "no file: name the one to look into" : Contradiction(given);
        if (!problem.empty())
        {
            options.Refuse(problem);
        }
        return line;
    }
}
