#include "job/WrittenFile.h"

#include "job/EscapedName.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <system_error>

namespace Jobs
{
    namespace
    {
        // The frame of a file: header, directory if there are several sheets, sections without a gap, closing comment.
        constexpr std::string_view Header = "%!PS-Adobe-3.0\n%%CIP3-File Version 3.0\n%\xE2\xE3\xCF\xD3\n\n";
        constexpr std::string_view DirectoryBegin = "CIP3BeginPPFDirectory\n";
        constexpr std::string_view DirectoryEnd = "CIP3EndPPFDirectory\n\n";
        constexpr std::string_view SheetBegin = "CIP3BeginSheet\n";
        constexpr std::string_view SheetEnd = "CIP3EndSheet\n\n";
        constexpr std::string_view ClosingComment = "%%CIP3EndOfFile\n";

        // A line of the directory: "0000000601 0000000712 (S1)", blanks, and its key word.
        constexpr std::size_t EntryBytes = 256;
        constexpr std::size_t NumberDigits = 10;
        constexpr std::size_t LengthAt = NumberDigits + 1;
        constexpr std::size_t NameAt = LengthAt + NumberDigits + 1;
        constexpr std::size_t KeywordAt = 239;
        constexpr std::string_view EntryKeyword = "CIP3PPFDirEntry \n";

        /// A part of the file, in bytes from its first.
        struct Section
        {
            std::uint64_t offset;
            std::uint64_t length;
        };

        /// Ends the check.
        struct Fault
        {
            std::uint64_t offset;
            std::string text;
        };

        class Checker
        {
        public:
            Checker(std::string_view theFile, const Job& theJob)
                : file(theFile)
                , job(theJob)
            {
            }

            /// Throws Fault.
            void Check()
            {
                if (BytesAt(0, Header.size()) != Header)
                {
                    throw Fault{0, "the header is missing"};
                }
                const std::uint64_t frame = Header.size() + DirectoryBytes() + ClosingComment.size();
                const std::uint64_t size = file.size();
                if (size < frame || BytesAt(size - ClosingComment.size(), ClosingComment.size()) != ClosingComment)
                {
                    throw Fault{size, "the file ends here without its closing comment"};
                }
                sectionsEnd = size - ClosingComment.size();

                std::uint64_t end = Header.size() + DirectoryBytes();
                for (std::size_t i = 0; i < job.sheets.size(); ++i)
                {
                    end = CheckSection(i, SectionOf(i), end);
                }
                if (end != sectionsEnd)
                {
                    throw Fault{end, "the sections end here, and the closing comment does not follow"};
                }
            }

        private:
            bool HasDirectory() const { return job.sheets.size() > 1; }

            std::uint64_t DirectoryBytes() const
            {
                return HasDirectory() ? DirectoryBegin.size() + job.sheets.size() * EntryBytes + DirectoryEnd.size()
                                      : 0;
            }

            /// Where the sheet's section is by the directory, or all of the sections if there is none.
            Section SectionOf(std::size_t index)
            {
                if (!HasDirectory())
                {
                    return {Header.size(), sectionsEnd - Header.size()};
                }
                const std::uint64_t at = Header.size() + DirectoryBegin.size() + index * EntryBytes;
                const std::string_view entry = BytesAt(at, EntryBytes);
                const std::string name = '(' + EscapedName(job.sheets[index].sheetName) + ')';
                const std::optional<std::uint64_t> offset = NumberAt(entry, 0);
                const std::optional<std::uint64_t> length = NumberAt(entry, LengthAt);
                if (!offset || !length || entry.compare(NameAt, name.size(), name) != 0 ||
                    entry.compare(KeywordAt, EntryKeyword.size(), EntryKeyword) != 0)
                {
                    throw Fault{at, "this is no directory entry of sheet " + std::to_string(index + 1)};
                }
                return {*offset, *length};
            }

            /// Checks the section that has to begin at `begin`; gives its end.
            std::uint64_t CheckSection(std::size_t index, const Section& section, std::uint64_t begin)
            {
                const std::uint64_t end = section.offset + section.length;
                const bool fits = section.offset == begin && end <= sectionsEnd &&
                                  section.length >= SheetBegin.size() + SheetEnd.size();
                if (!fits || BytesAt(begin, SheetBegin.size()) != SheetBegin ||
                    BytesAt(end - SheetEnd.size(), SheetEnd.size()) != SheetEnd)
                {
                    throw Fault{
                        begin, "the section of sheet " + std::to_string(index + 1) +
                                   " is not where the directory says, or not whole"};
                }
                return end;
            }

            static std::optional<std::uint64_t> NumberAt(std::string_view entry, std::size_t at)
            {
                std::uint64_t number = 0;
                const char* const end = entry.data() + at + NumberDigits;
                const auto [stop, problem] = std::from_chars(entry.data() + at, end, number);
                return problem == std::errc() && stop == end ? std::optional(number) : std::nullopt;
            }

            /// Fewer where the file ends.
            std::string_view BytesAt(std::uint64_t offset, std::size_t size) const
            {
                return file.substr(std::min<std::uint64_t>(offset, file.size()), size);
            }

            std::string_view file;
            const Job& job;
            std::uint64_t sectionsEnd = 0; ///< offset of the closing comment
        };
    }

    std::string FaultOfWrittenFile(std::string_view file, const Job& job)
    {
        try
        {
            Checker(file, job).Check();
        }
        catch (const Fault& fault)
        {
            return "byte " + std::to_string(fault.offset) + ": " + fault.text;
        }
        return {};
    }
}
