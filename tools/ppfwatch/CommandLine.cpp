#include "ppfwatch/CommandLine.h"

#include "host/ProgramOptions.h"

namespace PpfWatch
{
    namespace
    {
        constexpr char Description[] =
            "Watches a folder for ink separations and turns each whole job into a CIP3 PPF file.";
        constexpr char Usage[] = "Usage: ppfwatch [--once] CONFIG.json\n";
        constexpr char Footer[] =
            "SIGTERM and SIGINT: what is being converted is finished. SIGHUP: the configuration is read again.\n\n"
            "Exit status: 0 ended as asked, 1 the folder cannot be watched or, with --once, a job failed, 2 the "
            "command\n"
            "line or the configuration is wrong.";
    }

    CommandLine ParseCommandLine(int argc, const char* const* argv)
    {
        Host::ProgramOptions options("ppfwatch", PPFWATCH_VERSION, Description, Usage, Footer);
        const CLI::Option* const once = options.AddFlag("--once", "Convert what is there, and end");
        const CLI::Option* const config =
            options.Add("CONFIG.json", "", "The configuration: folders, names, and when a job is whole");
        CommandLine line;
        line.answer = options.Parse(argc, argv);
        line.once = !once->empty();
        line.config = Host::TextOf(config);
        if (line.answer.empty() && line.config.empty())
        {
            options.Refuse("no configuration: name its file");
        }
        return line;
    }
}
