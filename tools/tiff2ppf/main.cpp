// tiff2ppf: ink separations in TIFF in, one CIP3 PPF file out. Here the parts meet.
#include "host/Program.h"
#include "job/Conversion.h"
#include "job/JobFile.h"
#include "tiff2ppf/CommandLine.h"

#include <iostream>

#include <unistd.h>

namespace
{
    using Tiff2Ppf::CommandLine;

    Jobs::Job JobOf(const CommandLine& line)
    {
        Jobs::Job job = line.jobFile.empty() ? line.job : Jobs::LoadJobFile(line.jobFile);
        if (line.compression)
        {
            job.compression = line.compression;
        }
        if (line.encoding)
        {
            job.encoding = line.encoding;
        }
        job.reduction = line.reduction.value_or(job.reduction);
        job.inputResolution = line.inputResolution.value_or(job.inputResolution);
        for (Jobs::Sheet& sheet : job.sheets)
        {
            sheet.frontOrientation = line.frontOrientation.value_or(sheet.frontOrientation);
            sheet.backOrientation = line.backOrientation.value_or(sheet.backOrientation);
        }
        return job;
    }

    Jobs::ConversionSettings SettingsOf(const CommandLine& line)
    {
        Jobs::ConversionSettings settings;
        settings.output = line.output;
        settings.durability = line.sync ? Host::Durability::OnDisk : Host::Durability::Scratch;
        settings.jobFile = line.jobFile;
        settings.mixedSizes = line.mixedSizes;
        settings.verbose = line.verbose;
        settings.isTerminal = isatty(STDERR_FILENO) != 0;
        settings.threads = line.threads;
        return settings;
    }

    Host::ExitStatus Run(int argc, const char* const* argv)
    {
        const CommandLine line = Tiff2Ppf::ParseCommandLine(argc, argv);
        if (!line.answer.empty())
        {
            Host::Answer(line.answer);
            return Host::ExitDone;
        }
        Jobs::Convert(JobOf(line), SettingsOf(line), std::cerr);
        return Host::ExitDone;
    }
}

int main(int argc, char** argv)
{
    return Host::RunProgram("tiff2ppf", argc, argv, &Run);
}
