#include "ppfinfo/Options.h"

#include <CLI/CLI.hpp>

namespace ppfinfo
{
    namespace
    {
        std::string CheckLength(const std::string& text)
        {
            return ParseLength(text) ? ""
                                     : "needs a length above 0 with its unit, as in 32.5mm (mm, cm, inch or point)";
        }
    }

    CommandLine ReadCommandLine(int argc, const char* const* argv)
    {
        CommandLine line = {CommandLine::Outcome::run, {}, ""};
        Options& options = line.options;
        std::string zoneWidth;

        CLI::App app(
            "Looks into a print production (PPF) file: what it holds, whether it is well formed, and how much "
            "ink it asks for.",
            "ppfinfo");
        app.set_version_flag("--version", "ppfinfo " SHEETVANE_VERSION);
        app.add_option("FILE", options.file, "The file to look into")->required();
        auto* json = app.add_flag("--json", options.json, "Write what the file holds as JSON");
        auto* check =
            app.add_flag("--check", options.check, "Say whether the file is well formed, by exit status and findings");
        auto* extract =
            app.add_option("--extract", options.extractTo, "Write each separation's preview as PNG into this folder")
                ->type_name("DIR");
        auto* report =
            app.add_option("--report", options.reportTo, "Write a page with pictures and ink zones for a browser")
                ->type_name("OUT.html");
        auto* zones = app.add_option("--zones", options.zones.count, "Mean ink coverage of each of N equal zones")
                          ->type_name("N")
                          ->check(CLI::Range(std::uint64_t{1}, mostZones));
        auto* width = app.add_option("--zone-width", zoneWidth, "The same with zones of this width, as in 32.5mm")
                          ->type_name("WIDTH")
                          ->check(CLI::Validator(CheckLength, ""));
        check->excludes(json)->excludes(extract)->excludes(report)->excludes(zones)->excludes(width);
        extract->excludes(json)->excludes(report)->excludes(zones)->excludes(width);
        report->excludes(json);
        width->excludes(zones);
        try
        {
            app.parse(argc, argv);
            options.zones.width = ParseLength(zoneWidth).value_or(0);
        }
        catch (const CLI::CallForHelp&)
        {
            line.outcome = CommandLine::Outcome::answer;
            line.text = app.help();
        }
        catch (const CLI::CallForVersion& version)
        {
            line.outcome = CommandLine::Outcome::answer;
            line.text = std::string(version.what()) + "\n";
        }
        catch (const CLI::ParseError& error)
        {
            line.outcome = CommandLine::Outcome::usageError;
            line.text = error.what();
        }
        return line;
    }
}
