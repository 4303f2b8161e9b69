#include "ppfinfo/Options.h"

#include "host/Failure.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <memory>

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
            const bool isNumber =
                !text.empty() && text.size() < 10 && text.find_first_not_of("0123456789") == text.npos;
            const bool fits = isNumber && std::stoul(text) >= 1 && std::stoul(text) <= MostZones;
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

        class HelpFormatter : public CLI::Formatter
        {
        public:
            std::string make_usage(const CLI::App*, std::string) const override
            {
                return "Usage: ppfinfo [ZONES] [--json | --csv] FILE.ppf\n"
                       "       ppfinfo [ZONES] --report OUT.html | --jdf OUT.jdf | --xjdf OUT.xjdf FILE.ppf\n"
                       "       ppfinfo --check FILE.ppf\n"
                       "       ppfinfo --extract DIR FILE.ppf\n"
                       "ZONES: --zones N | --zone-width WIDTH | --zones N --zone-width WIDTH [--zone-offset LENGTH]\n";
            }
        };
    }

    CommandLine ReadCommandLine(int argc, const char* const* argv)
    {
        CommandLine line;
        Options& options = line.options;
        std::string zoneWidth;
        std::string zoneOffset;

        CLI::App app(
            "Looks into a print production (PPF) file: what it holds, whether it is well formed, and how much "
            "ink it asks for.",
            "ppfinfo");
        app.formatter(std::make_shared<HelpFormatter>());
        app.footer("Example:\n  ppfinfo --report cover.html --zone-width 32.5mm cover.ppf\n\n"
                   "Exit status: 0 nothing is wrong with what was read, 1 the file is damaged or cannot be read, or "
                   "output cannot\n"
                   "be written, 2 the command line is wrong.");
        app.set_help_flag("-h,--help", "Print this text and end");
        app.set_version_flag("--version", "ppfinfo " SHEETVANE_VERSION, "Print the version and end");
        const CLI::Option* const file =
            app.add_option("FILE.ppf", options.file, "The file to look into, - for standard input")->type_name("");
        app.add_flag("--json", options.json, "Write what the file holds as JSON");
        app.add_flag("--check", options.check, "Say whether the file is well formed, by exit status and findings");
        app.add_option("--extract", options.extractTo, "Write each separation's preview as PNG into this folder")
            ->type_name("DIR")
            ->check(CLI::Validator(CheckPlace, ""));
        app.add_option("--report", options.reportTo, "Write a page with pictures and ink zones for a browser")
            ->type_name("OUT.html")
            ->check(CLI::Validator(CheckPlace, ""));
        app.add_flag("--csv", options.csv, "Write the ink zones as CSV");
        app.add_option("--jdf", options.jdfTo, "Write the ink zones as a JDF 1.5 document")
            ->type_name("OUT.jdf")
            ->check(CLI::Validator(CheckPlace, ""));
        app.add_option("--xjdf", options.xjdfTo, "Write the ink zones as an XJDF 2.1 document")
            ->type_name("OUT.xjdf")
            ->check(CLI::Validator(CheckPlace, ""));
        app.add_option("--zones", options.zones.count, "Mean ink coverage of each of N equal zones")
            ->type_name("N")
            ->check(CLI::Validator(CheckCount, ""));
        app.add_option(
               "--zone-width", zoneWidth,
               "The same with zones of this width, a number with mm, cm, inch or point; with --zones, the N zones "
               "of this width of a press, the sheet in their middle")
            ->type_name("WIDTH")
            ->check(CLI::Validator(CheckLength, ""));
        app.add_option(
               "--zone-offset", zoneOffset,
               "Of a press: how far right of zone 1's left edge the sheet's left edge lies, in place of the middle")
            ->type_name("LENGTH")
            ->check(CLI::Validator(CheckOffset, ""));
        std::string problem;
        try
        {
            app.parse(argc, argv);
            options.zones.width = ParseLength(zoneWidth).value_or(0);
            options.zones.offset = ParseLength(zoneOffset);
            problem = file->empty() ? "no file: name the one to look into" : Contradiction(options);
        }
        catch (const CLI::CallForHelp&)
        {
            line.answer = app.help();
        }
        catch (const CLI::CallForVersion& version)
        {
            line.answer = std::string(version.what()) + "\n";
        }
        catch (const CLI::ParseError& error)
        {
            problem = error.what();
        }
        if (!problem.empty())
        {
            throw Host::UsageError(problem + "; see ppfinfo --help");
        }
        return line;
    }
}
