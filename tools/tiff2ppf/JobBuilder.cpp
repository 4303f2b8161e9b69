#include "tiff2ppf/JobBuilder.h"

#include "host/Failure.h"
#include "host/Paths.h"
#include "host/Text.h"
#include "job/InkFile.h"
#include "job/InkSet.h"

#include <utility>

namespace Tiff2Ppf
{
    using Jobs::Job;
    using Jobs::Separation;
    using Jobs::Sheet;

    JobBuilder::JobBuilder(const std::string& theJobName, const std::string& theFolder)
        : folder(theFolder)
    {
        blank.jobName = theJobName;
    }

    void JobBuilder::OpenSheet(const std::string& name)
    {
        job.sheets.push_back(blank);
        job.sheets.back().sheetName = name;
        orientationsHere.clear();
    }

    void JobBuilder::AddFile(const std::string& option, const std::string& inkAndFile)
    {
        std::vector<Separation>& side = SideFor(option);
        const auto [ink, file] = Jobs::SplitAtSign(option, inkAndFile, "INK=FILE");
        if (file.empty())
        {
            throw Host::UsageError(option + ' ' + Host::Quoted(inkAndFile) + ": the file name is empty");
        }
        side.push_back({ink, Host::AbsolutePath(file, folder)});
    }

    void JobBuilder::AddInks(const std::string& option, const std::string& file)
    {
        std::vector<Separation>& side = SideFor(option);
        if (file.empty())
        {
            throw Host::UsageError(option + ": the file name is empty");
        }
        side.push_back(Jobs::EveryInkOf(Host::AbsolutePath(file, folder)));
    }

    void JobBuilder::AddSet(const std::string& option, const std::string& pattern)
    {
        std::vector<Separation>& side = SideFor(option);
        try
        {
            const std::vector<Separation> set = Jobs::SeparationsOfSet(pattern, folder);
            side.insert(side.end(), set.begin(), set.end());
        }
        catch (const Host::UsageError& refusal)
        {
            throw Host::UsageError(option + ": " + refusal.what());
        }
    }

    void JobBuilder::AddParameter(const std::string& keyAndValue)
    {
        Sheet& sheet = SheetFor("--param");
        const auto [key, value] = Jobs::ParameterOf(keyAndValue);
        if (!sheet.parameters.emplace(key, value).second)
        {
            throw Host::UsageError(
                Jobs::SheetForPerson(job, job.sheets.size() - 1) + ": --param " + Host::Quoted(key) + " is repeated");
        }
    }

    void JobBuilder::SetOrientation(const std::string& option, Jobs::Orientation orientation)
    {
        if (!orientationsHere.insert(option).second)
        {
            throw Host::UsageError(option + " is repeated without a --sheet between");
        }
        Sheet& sheet = job.sheets.empty() ? blank : job.sheets.back();
        (option == "--front-orientation" ? sheet.frontOrientation : sheet.backOrientation) = orientation;
    }

    Job JobBuilder::Take()
    {
        return std::move(job);
    }

    Sheet& JobBuilder::SheetFor(const std::string& option)
    {
        if (job.sheets.empty())
        {
            throw Host::UsageError(option + " belongs to a sheet: open one with --sheet before it");
        }
        return job.sheets.back();
    }

    std::vector<Separation>& JobBuilder::SideFor(const std::string& option)
    {
        Sheet& sheet = SheetFor(option);
        return option.rfind("--front", 0) == 0 ? sheet.front : sheet.back;
    }
}
