#include "tiff2ppf/JobBuilder.h"

#include "host/Failure.h"
#include "host/Paths.h"
#include "host/Text.h"

#include <utility>

namespace Tiff2Ppf
{
    using Jobs::Job;
    using Jobs::Separation;
    using Jobs::Sheet;

    namespace
    {
        std::pair<std::string, std::string>
        SplitAtSign(const std::string& option, const std::string& text, const char* form)
        {
            const auto sign = text.find('=');
            if (sign == std::string::npos)
            {
                throw Host::UsageError(option + ' ' + Host::Quoted(text) + ": the form is " + form);
            }
            return {text.substr(0, sign), text.substr(sign + 1)};
        }
    }

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

    void JobBuilder::AddFront(const std::string& inkAndFile)
    {
        SheetFor("--front").front.push_back(SeparationOf("--front", inkAndFile));
    }

    void JobBuilder::AddBack(const std::string& inkAndFile)
    {
        SheetFor("--back").back.push_back(SeparationOf("--back", inkAndFile));
    }

    void JobBuilder::AddParameter(const std::string& keyAndValue)
    {
        Sheet& sheet = SheetFor("--param");
        const auto [key, value] = SplitAtSign("--param", keyAndValue, "KEY=VALUE");
        if (key.empty())
        {
            throw Host::UsageError("--param " + Host::Quoted(keyAndValue) + ": the key is empty");
        }
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

    Separation JobBuilder::SeparationOf(const std::string& option, const std::string& inkAndFile) const
    {
        const auto [ink, file] = SplitAtSign(option, inkAndFile, "INK=FILE");
        if (file.empty())
        {
            throw Host::UsageError(option + ' ' + Host::Quoted(inkAndFile) + ": the file name is empty");
        }
        return {ink, Host::AbsolutePath(file, folder)};
    }
}
