#include "job/Job.h"

#include "host/Failure.h"
#include "host/Number.h"
#include "host/Text.h"
#include "job/EscapedName.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace Jobs
{
    namespace
    {
        /// Bytes of a sheet name as it stands in the file, which keeps room for no more in its directory.
        constexpr std::size_t MaxSheetNameBytes = 214;

        /// In the order of their values.
        constexpr std::array<const char*, 8> Orientations = {"rotate0", "rotate90", "rotate180", "rotate270",
                                                             "flip0",   "flip90",   "flip180",   "flip270"};

        constexpr double SmallestResolution = 1;
        constexpr double LargestResolution = 2400;

        void CheckSheet(const Job& job, std::size_t index)
        {
            const Sheet& sheet = job.sheets[index];
            const auto refuse = [&](const std::string& why)
            { throw Host::UsageError(SheetForPerson(job, index) + ": " + why); };

            if (sheet.jobName.empty())
            {
                refuse("the job name is empty; --job or the job file's jobName gives it");
            }
            if (sheet.front.empty() && sheet.back.empty())
            {
                refuse("neither front nor back has a file");
            }
            if (sheet.sheetName.empty() && job.sheets.size() > 1)
            {
                refuse("the sheet name is empty, and a job of several sheets needs one for each");
            }
            const std::size_t nameBytes = EscapedName(sheet.sheetName).size();
            if (nameBytes > MaxSheetNameBytes)
            {
                refuse(
                    "the sheet name takes " + std::to_string(nameBytes) + " bytes in the file, which has room for " +
                    std::to_string(MaxSheetNameBytes));
            }
        }
    }

    const char* const CompressionWords = "none, runlength";
    const char* const EncodingWords = "binary, asciihex, ascii85";
    const char* const OrientationWords = "rotate0, rotate90, rotate180, rotate270, flip0, flip90, flip180, flip270";
    const char* const ReductionWords = "auto, keep, a number of pixels per inch from 1 to 2400";
    const char* const InputResolutionWords = "numbers of pixels per inch above 0";

    std::optional<Compression> CompressionOfWord(const std::string& word)
    {
        if (word == "none")
        {
            return Compression::CIP3CompressionNone;
        }
        if (word == "runlength")
        {
            return Compression::CIP3CompressionRunLength;
        }
        return std::nullopt;
    }

    std::optional<Encoding> EncodingOfWord(const std::string& word)
    {
        if (word == "binary")
        {
            return Encoding::CIP3EncodingBinary;
        }
        if (word == "asciihex")
        {
            return Encoding::CIP3EncodingASCIIHex;
        }
        if (word == "ascii85")
        {
            return Encoding::CIP3EncodingASCII85;
        }
        return std::nullopt;
    }

    std::optional<Orientation> OrientationOfWord(const std::string& word)
    {
        const auto* const found = std::find(Orientations.begin(), Orientations.end(), word);
        return found == Orientations.end() ? std::nullopt
                                           : std::optional(static_cast<Orientation>(found - Orientations.begin()));
    }

    std::optional<Reduction> ReductionOfWord(const std::string& word)
    {
        if (word == "auto")
        {
            return AutoReduction;
        }
        if (word == "keep")
        {
            return KeepAll;
        }
        const std::optional<double> resolution = Host::NumberOf<double>(word);
        return resolution ? ReductionOf(*resolution) : std::nullopt;
    }

    std::optional<double> InputResolutionOfWord(const std::string& word)
    {
        const std::optional<double> resolution = Host::NumberOf<double>(word);
        return resolution ? InputResolutionOf(*resolution) : std::nullopt;
    }

    std::optional<Reduction> ReductionOf(double resolution)
    {
        const bool fits = resolution >= SmallestResolution && resolution <= LargestResolution;
        return fits ? std::optional(Reduction{resolution, 0}) : std::nullopt;
    }

    std::optional<double> InputResolutionOf(double resolution)
    {
        return std::isfinite(resolution) && resolution > 0 ? std::optional(resolution) : std::nullopt;
    }

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

    std::pair<std::string, std::string> ParameterOf(const std::string& keyAndValue)
    {
        auto parameter = SplitAtSign("--param", keyAndValue, "KEY=VALUE");
        if (parameter.first.empty())
        {
            throw Host::UsageError("--param " + Host::Quoted(keyAndValue) + ": the key is empty");
        }
        return parameter;
    }

    std::string SheetForPerson(const Job& job, std::size_t index)
    {
        const std::string& name = job.sheets[index].sheetName;
        const std::string position = "sheet " + std::to_string(index + 1);
        return name.empty() ? position : position + ' ' + Host::Quoted(name);
    }

    void CheckJob(const Job& job)
    {
        if (job.sheets.empty())
        {
            throw Host::UsageError("the job has no sheet");
        }
        for (std::size_t index = 0; index < job.sheets.size(); ++index)
        {
            CheckSheet(job, index);
        }
    }
}
