#include "job/WrittenCheck.h"

#include "job/EscapedName.h"
#include "ppf/Check.h"
#include "ppf/Definition.h"
#include "ppf/DocumentReader.h"
#include "ppf/Expectation.h"
#include "ppf/Keywords.h"
#include "ppf/Scanner.h"
#include "ppf/StringLiteral.h"

#include <cstdint>

namespace Jobs
{
    namespace
    {
        std::string TextOf(const Ppf::Finding& finding)
        {
            return "byte " + std::to_string(finding.offset) + ": " + finding.text;
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

        /// The name as a PostScript reader gets it, which takes every kind of line end for the same.
        std::string NameRead(const std::string& name)
        {
            return Ppf::StringOf('(' + EscapedName(name) + ')').value_or(name);
        }

        void ExpectSide(Ppf::ExpectedSheet& sheet, Ppf::Side side, const std::vector<Separation>& separations)
        {
            if (separations.empty())
            {
                return;
            }
            sheet.sides.push_back({side, {}});
            for (const Separation& separation : separations)
            {
                sheet.sides.back().separations.push_back({NameRead(separation.name)});
            }
        }

        /// What the job's sheets are to hold. A parameter may give a name anew; what it says is not looked at.
        std::vector<Ppf::ExpectedSheet> ExpectationOf(const Job& job, const Ppf::Document& document)
        {
            std::vector<Ppf::ExpectedSheet> sheets;
            for (const Sheet& sheet : job.sheets)
            {
                const std::size_t index = sheets.size();
                const Ppf::Sheet* const found = index < document.sheets.size() ? &document.sheets[index] : nullptr;
                const auto isGivenAnew = [&](std::string_view key)
                { return found != nullptr && sheet.parameters.count(std::string(key)) > 0; };
                Ppf::ExpectedSheet expected;
                expected.jobName = isGivenAnew(Ppf::Key::JobName) ? found->JobName() : NameRead(sheet.jobName);
                expected.sheetName = isGivenAnew(Ppf::Key::SheetName) ? found->SheetName() : NameRead(sheet.sheetName);
                ExpectSide(expected, Ppf::Side::Front, sheet.front);
                ExpectSide(expected, Ppf::Side::Back, sheet.back);
                sheets.push_back(std::move(expected));
            }
            return sheets;
        }

        bool BeginsWith(std::string_view text, std::string_view begin)
        {
            return text.substr(0, begin.size()) == begin;
        }

        /// Whether `section` is a sheet's, from its first word to the empty line after its last.
        bool IsSheetSection(std::string_view section)
        {
            const std::string begin = std::string(Ppf::Word::Begin) + std::string(Ppf::Word::Sheet) + '\n';
            const std::string end = std::string(Ppf::Word::End) + std::string(Ppf::Word::Sheet) + "\n\n";
            return section.size() >= begin.size() + end.size() && BeginsWith(section, begin) &&
                   section.substr(section.size() - end.size()) == end;
        }

        /// What can be held against each other where the sections' content cannot be read.
        std::string FindingInFrame(const Ppf::Document& document, const Job& job)
        {
            const std::string_view file = document.bytes;
            const std::string closing = std::string(Ppf::Word::EndOfFile) + '\n';
            if (!BeginsWith(file, Ppf::Word::Magic))
            {
                return TextOf({0, "the header is missing"});
            }
            if (file.size() < closing.size() || file.substr(file.size() - closing.size()) != closing)
            {
                return TextOf({file.size(), "the file ends here without its closing comment"});
            }
            const std::size_t entries = job.sheets.size() > 1 ? job.sheets.size() : 0;
            if (document.directory.size() != entries)
            {
                return TextOf(
                    {0, "the directory has " + std::to_string(document.directory.size()) + " of " +
                            std::to_string(entries) + " entries"});
            }
            for (std::size_t i = 0; i < entries; ++i)
            {
                const Ppf::DirectoryEntry& entry = document.directory[i];
                const std::uint64_t end = entry.offset + entry.length;
                const std::uint64_t next =
                    i + 1 < entries ? document.directory[i + 1].offset : file.size() - closing.size();
                if (end != next || end > file.size() || entry.sheetName != NameRead(job.sheets[i].sheetName) ||
                    !IsSheetSection(file.substr(entry.offset, entry.length)))
                {
                    return TextOf(
                        {entry.position, "this is not the directory's entry of sheet " + std::to_string(i + 1)});
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

    std::string FindingInWrittenFile(std::string_view file, const Job& job, bool mixedSizes)
    {
        // The file's records are no more than what the job has in memory already.
        const Ppf::Document document = Ppf::ReadDocument(file, Ppf::NoLimits);
        if (mixedSizes || !IsReadable(job))
        {
            return FindingInFrame(document, job);
        }
        std::vector<Ppf::Finding> findings = Ppf::Check(document, Ppf::CheckDepth::Sizes);
        if (findings.empty())
        {
            findings = Ppf::CheckAgainst(document, ExpectationOf(job, document));
        }
        return findings.empty() ? std::string() : TextOf(findings.front());
    }
}
