// ppfwatch: separations dropped into a folder, PPF files out of another. Here configurations follow one another.
#include "host/Failure.h"
#include "host/Paths.h"
#include "host/Program.h"
#include "host/Text.h"
#include "ppfwatch/CommandLine.h"
#include "ppfwatch/Config.h"
#include "ppfwatch/Log.h"
#include "ppfwatch/SignalQueue.h"
#include "ppfwatch/Watcher.h"

#include <cerrno>
#include <memory>

#include <unistd.h>

namespace
{
    using namespace PpfWatch;

    /// The folder of this program, where those that convert stand, too.
    std::string ProgramFolder()
    {
        std::string folder = Host::FolderOf(Host::EndOfLinks("/proc/self/exe"));
        if (access((folder + "/tiff2ppf").c_str(), X_OK) != 0)
        {
            throw Host::Failure(
                folder + "/tiff2ppf cannot be run: " + Host::SystemText(errno) + "; it converts the jobs");
        }
        return folder;
    }

    Host::ExitStatus Run(int argc, const char* const* argv)
    {
        const CommandLine line = ParseCommandLine(argc, argv);
        if (!line.answer.empty())
        {
            Host::Answer(line.answer);
            return Host::ExitDone;
        }
        Config config = LoadConfig(line.config);
        const Watcher::Settings settings = {
            Host::AbsolutePath(line.config, Host::CurrentFolder()), ProgramFolder(), line.once};
        const Log log(STDERR_FILENO, Log::FormOfEnvironment());
        const SignalQueue signals;
        auto watcher = std::make_unique<Watcher>(config, settings, log, signals);
        while (watcher->Run() == Watcher::End::NewConfig)
        {
            const Config wanted = watcher->NewConfig();
            watcher.reset(); // its folder may be the new one's, too
            try
            {
                watcher = std::make_unique<Watcher>(wanted, settings, log, signals);
                config = wanted;
            }
            catch (const Host::Failure& failure)
            {
                log.Say(Level::Error, std::string(failure.what()) + "; the old configuration stays");
                watcher = std::make_unique<Watcher>(config, settings, log, signals);
            }
        }
        return line.once && watcher->HasFailed() ? Host::ExitFailed : Host::ExitDone;
    }
}

int main(int argc, char** argv)
{
    return Host::RunProgram("ppfwatch", argc, argv, &Run);
}
