#include "pdf2ppf/PageJob.h"

#include "host/Failure.h"
#include "host/Number.h"
#include "host/Text.h"

#include <ostream>
#include <string_view>

namespace Pdf2Ppf
{
    namespace
    {
        /// The pattern with `number` for each %d.
        std::string SheetName(const std::string& pattern, std::uint64_t number)
        {
            constexpr std::string_view Place = "%d";
            std::string name = pattern;
            const std::string digits = std::to_string(number);
            for (auto at = name.find(Place); at != std::string::npos; at = name.find(Place, at + digits.size()))
            {
                name.replace(at, Place.size(), digits);
            }
            return name;
        }

        std::uint64_t SheetNumber(const CommandLine& line, const Page& page)
        {
            return line.duplex ? (page.number + 1) / 2 : page.number;
        }

        bool IsBack(const CommandLine& line, const Page& page)
        {
            return line.duplex && page.number % 2 == 0;
        }

        /// "203 x 51"
        std::string TextOf(const Size& size)
        {
            return std::to_string(size.width) + " x " + std::to_string(size.height);
        }

        std::vector<Jobs::Separation> SeparationsOf(const Page& page)
        {
            std::vector<Jobs::Separation> separations;
            for (const Ink& ink : page.inks)
            {
                Jobs::Separation separation;
                separation.name = ink.name;
                separation.file = ink.file;
                separations.push_back(std::move(separation));
            }
            return separations;
        }
    }

    Jobs::Job JobOf(const CommandLine& line, const std::vector<Page>& pages)
    {
        Jobs::Job job;
        job.compression = line.compression;
        job.encoding = line.encoding;
        job.reduction = Jobs::KeepAll; // the pages' previews are made already
        std::uint64_t sheetBefore = 0;
        for (const Page& page : pages)
        {
            const std::uint64_t number = SheetNumber(line, page);
            if (number != sheetBefore)
            {
                Jobs::Sheet sheet;
                sheet.jobName = line.jobName;
                sheet.sheetName = SheetName(line.sheetName, number);
                sheet.parameters = line.parameters;
                job.sheets.push_back(std::move(sheet));
                sheetBefore = number;
            }
            Jobs::Sheet& sheet = job.sheets.back();
            (IsBack(line, page) ? sheet.back : sheet.front) = SeparationsOf(page);
        }
        return job;
    }

    void CheckSizes(const CommandLine& line, const std::vector<Page>& pages)
    {
        for (std::size_t i = 1; line.duplex && i < pages.size(); ++i)
        {
            const Page& front = pages[i - 1];
            const Page& back = pages[i];
            const bool areAlike =
                front.preview.width == back.preview.width && front.preview.height == back.preview.height;
            if (SheetNumber(line, front) == SheetNumber(line, back) && !areAlike)
            {
                throw Host::Failure(
                    line.input + ": pages " + std::to_string(front.number) + " and " + std::to_string(back.number) +
                    ", front and back of a sheet, differ in size: " + TextOf(front.preview) + " and " +
                    TextOf(back.preview) + " pixels at " + Host::ShortText(line.resolution) + " per inch");
            }
        }
    }

    void SayPages(std::ostream& messages, const CommandLine& line, const std::vector<Page>& pages, const Jobs::Job& job)
    {
        std::size_t index = 0;
        for (std::size_t i = 0; i < pages.size(); ++i)
        {
            const Page& page = pages[i];
            if (i > 0 && SheetNumber(line, page) != SheetNumber(line, pages[i - 1]))
            {
                ++index;
            }
            std::string text = Jobs::SheetForPerson(job, index) + ", " + (IsBack(line, page) ? "back" : "front") +
                               ": " + TextOf(page.rendered) + " pixels at " +
                               Host::ShortText(line.resolution * line.oversampling) + " per inch";
            if (line.oversampling > 1)
            {
                text += " to " + TextOf(page.preview) + " at " + Host::ShortText(line.resolution);
            }
            const char* separator = ": ";
            for (const Ink& ink : page.inks)
            {
                text += separator + ink.name;
                separator = ", ";
            }
            messages << Host::OneLine(text) + '\n' << std::flush;
        }
    }

    void CheckNames(const CommandLine& line)
    {
        Jobs::CheckJob(JobOf(line, {{line.pages.At(0), {{"Black", ""}}, {}, {}}}));
    }
}
