// tiff2ppf: ink separations in TIFF in, one CIP3 PPF file out. Here the parts meet and failures become exit statuses.
#include "tiff2ppf/CommandLine.h"
#include "tiff2ppf/Conversion.h"
#include "tiff2ppf/Failure.h"
#include "tiff2ppf/JobFile.h"
#include "tiff2ppf/Paths.h"
#include "tiff2ppf/Signals.h"
#include "tiff2ppf/Text.h"

#include <cstdlib>
#include <exception>
#include <iostream>

#include <unistd.h>

namespace
{
    using namespace Tiff2Ppf;

    Job JobOf(const CommandLine& line)
    {
        Job job = line.jobFile.empty() ? line.job : LoadJobFile(line.jobFile, std::cin);
        if (line.compression)
        {
            job.compression = line.compression;
        }
        if (line.encoding)
        {
            job.encoding = line.encoding;
        }
        return job;
    }

    ConversionSettings SettingsOf(const CommandLine& line)
    {
        ConversionSettings settings;
        settings.output = line.output == "-" ? line.output : AbsolutePath(line.output, CurrentFolder());
        settings.jobFile = line.jobFile;
        settings.mixedSizes = line.mixedSizes;
        settings.verbose = line.verbose;
        settings.showProgress = isatty(STDERR_FILENO) != 0;
        return settings;
    }

    ExitStatus Fail(ExitStatus status, const char* what)
    {
        std::cerr << "tiff2ppf: error: " + OneLine(what) + '\n';
        return status;
    }

    ExitStatus Run(int argc, char** argv)
    {
        TurnWriteSignalsIntoErrors();
        try
        {
            const CommandLine line = ParseCommandLine(argc, argv);
            if (!line.answer.empty())
            {
                if (!(std::cout << line.answer << std::flush))
                {
                    return Fail(ExitFailed, "standard output cannot be written");
                }
                return ExitWritten;
            }
            Convert(JobOf(line), SettingsOf(line), std::cerr);
            return ExitWritten;
        }
        catch (const UsageError& error)
        {
            return Fail(ExitUsage, error.what());
        }
        catch (const std::exception& error)
        {
            return Fail(ExitFailed, error.what());
        }
    }
}

int main(int argc, char** argv)
{
    const ExitStatus status = Run(argc, argv);
#ifdef __SANITIZE_ADDRESS__
    return status; // leaks are looked for on the way out
#else
    // Everything is written and closed. The way out of twenty libraries would touch pages of each for nothing.
    std::_Exit(status);
#endif
}
