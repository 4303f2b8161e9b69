#include "ppfwatch/CommandLine.h"

#include "host/Failure.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace PpfWatch
{
    namespace
    {
        constexpr char Description[] =
            "Watches a folder for ink separations and turns each whole job into a CIP3 PPF file.";
        constexpr char Footer[] =
            "SIGTERM and SIGINT: what is being converted is finished. SIGHUP: the configuration is read again.\n\n"
            "Exit status: 0 ended as asked, 1 the folder cannot be watched or, with --once, a job failed, 2 the "
            "command\n"
            "line or the configuration is wrong.";
    }

    CommandLine ParseCommandLine(int argc, const char* const* argv)
    {
        CommandLine line;
        CLI::App app(Description, "ppfwatch");
        app.footer(Footer);
        app.set_help_flag("-h,--help", "Print this text and end");
        app.set_version_flag("--version", "ppfwatch " PPFWATCH_VERSION, "Print the version and end");
        app.add_flag("--once", line.once, "Convert what is there, and end");
        app.add_option("CONFIG.json", line.config, "The configuration: folders, names, and when a job is whole")
            ->type_name("");
        try
        {
            app.parse(argc, argv);
        }
        catch (const CLI::CallForHelp&)
        {
            line.answer = app.help();
            return line;
        }
        catch (const CLI::CallForVersion& version)
        {
            line.answer = std::string(version.what()) + '\n';
            return line;
        }
        catch (const CLI::ParseError& error)
        {
            throw Host::UsageError(std::string(error.what()) + "; see ppfwatch --help");
        }
        if (line.config.empty())
        {
            throw Host::UsageError("no configuration: name its file; see ppfwatch --help");
        }
        return line;
    }
}
