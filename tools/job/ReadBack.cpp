#include "job/ReadBack.h"

#include "ppf/Check.h"
#include "ppf/Definition.h"
#include "ppf/DocumentReader.h"
#include "ppf/Scanner.h"

#include <cstdint>

namespace Jobs
{
    namespace
    {
        std::string FaultAt(std::uint64_t offset, const std::string& text)
        {
            return "byte " + std::to_string(offset) + ": " + text;
        }

        bool IsOneEntry(const std::string& key, const std::string& value)
        {
            const std::string text = '/' + key + ' ' + value + " def\n";
            try
            {
                Ppf::Scanner scanner(text);
                const Ppf::Token name = scanner.Next();
                Ppf::ReadDefinition(scanner, name, text);
                return name.text == '/' + key && scanner.Next().kind == Ppf::TokenKind::End;
            }
            catch (const Ppf::FormatError&)
            {
                return false;
            }
        }

        std::size_t SeparationsOf(const Ppf::Sheet& sheet, Ppf::Side side)
        {
            std::size_t count = 0;
            for (const Ppf::Surface& surface : sheet.surfaces)
            {
                if (surface.side == side)
                {
                    count += surface.previews.size();
                }
            }
            return count;
        }

        std::string FaultAgainstJob(const Ppf::Document& document, const Job& job)
        {
            if (document.sheets.size() != job.sheets.size())
            {
                return FaultAt(
                    document.end, "the file has " + std::to_string(document.sheets.size()) + " of the job's " +
                                      std::to_string(job.sheets.size()) + " sheets");
            }
            for (std::size_t i = 0; i < job.sheets.size(); ++i)
            {
                const Ppf::Sheet& sheet = document.sheets[i];
                if (SeparationsOf(sheet, Ppf::Side::Front) != job.sheets[i].front.size() ||
                    SeparationsOf(sheet, Ppf::Side::Back) != job.sheets[i].back.size())
                {
                    return FaultAt(
                        sheet.offset,
                        "the section of sheet " + std::to_string(i + 1) + " does not have the separations of the job");
                }
            }
            return {};
        }
    }

    bool IsReadable(const Job& job)
    {
        for (const Sheet& sheet : job.sheets)
        {
            for (const auto& [key, value] : sheet.parameters)
            {
                const auto* const text = std::get_if<std::string>(&value);
                const auto* const measure = std::get_if<Measure>(&value);
                if (!IsOneEntry(key, text != nullptr ? *text : measure != nullptr ? "0 " + measure->units : "0"))
                {
                    return false;
                }
            }
        }
        return true;
    }

    std::string FaultOnReadingBack(std::string_view file, const Job& job)
    {
        // The file's records are no more than what the job has in memory already.
        const Ppf::Document document = Ppf::ReadDocument(file, Ppf::NoLimits);
        const auto findings = Ppf::Check(document, Ppf::CheckDepth::Structure);
        return findings.empty() ? FaultAgainstJob(document, job)
                                : FaultAt(findings.front().offset, findings.front().text);
    }
}
