// pdf2ppf: a PDF in, one CIP3 PPF file out. Here the parts meet.
#include "host/Output.h"
#include "host/Program.h"
#include "job/Conversion.h"
#include "pdf2ppf/CommandLine.h"
#include "pdf2ppf/PageJob.h"
#include "pdf2ppf/PrivateFolder.h"
#include "pdf2ppf/Rendering.h"

#include <iostream>

#include <sys/stat.h>
#include <unistd.h>

namespace
{
    using namespace Pdf2Ppf;

    void CheckOutputIsNotInput(const CommandLine& line)
    {
        struct stat input = {};
        struct stat output = {};
        if (stat(line.input.c_str(), &input) == 0 && stat(line.output.c_str(), &output) == 0 &&
            input.st_dev == output.st_dev && input.st_ino == output.st_ino)
        {
            throw Host::UsageError(line.output + ": the output would replace the input");
        }
    }

    Host::ExitStatus Run(int argc, const char* const* argv)
    {
        const CommandLine line = ParseCommandLine(argc, argv);
        if (!line.answer.empty())
        {
            Host::Answer(line.answer);
            return Host::ExitDone;
        }
        CheckNames(line);
        CheckOutputIsNotInput(line);

        RenderingOrder order;
        order.input = line.input;
        order.resolution = line.resolution;
        order.oversampling = line.oversampling;
        order.oddPages = line.frontOrientation;
        order.evenPages = line.duplex ? line.backOrientation : line.frontOrientation;
        order.pages = line.pages;
        order.keepBlank = line.keepBlank;
        order.showProgress = isatty(STDERR_FILENO) != 0;
        CheckInput(order);

        // An output that cannot be written is found before the pages are rendered.
        Host::Output output(line.output, line.sync ? Host::Durability::OnDisk : Host::Durability::Scratch);
        const PrivateFolder folder;
        const std::vector<Page> pages = Render(order, folder);
        const Jobs::Job job = JobOf(line, pages);
        Jobs::CheckJob(job);
        CheckSizes(line, pages);
        if (line.verbose)
        {
            SayPages(std::cerr, line, pages, job);
        }
        Jobs::ConversionSettings settings;
        settings.isTerminal = order.showProgress;
        Jobs::Convert(job, settings, output, std::cerr);
        return Host::ExitDone;
    }
}

int main(int argc, char** argv)
{
    return Host::RunProgram("pdf2ppf", argc, argv, &Run);
}
