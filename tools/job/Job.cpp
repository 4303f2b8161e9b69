#include "job/Job.h"

#include "host/Failure.h"
#include "host/Text.h"
#include "job/EscapedName.h"

namespace Jobs
{
    namespace
    {
        /// Bytes of a sheet name as it stands in the file, which keeps room for no more in its directory.
        constexpr std::size_t MaxSheetNameBytes = 214;

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
