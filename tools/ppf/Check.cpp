#include "ppf/Check.h"

#include "ppf/DecodedSize.h"
#include "ppf/DocumentReader.h"
#include "ppf/Keywords.h"
#include "ppf/ScanLineReader.h"
#include "ppf/Scanner.h"
#include "ppf/ValueCheck.h"

#include <algorithm>
#include <array>

namespace Ppf
{
    namespace
    {
        std::string Quoted(const std::string& name)
        {
            return "\"" + name.substr(0, 100) + "\"";
        }

        class Checker
        {
        public:
            Checker(const Document& theDocument, CheckDepth theDepth)
                : document(theDocument)
                , depth(theDepth)
            {
            }

            std::vector<Finding> Findings()
            {
                if (depth == CheckDepth::Everything)
                {
                    findings = CheckValues(document);
                }
                CheckDirectory();
                for (const Sheet& sheet : document.sheets)
                {
                    CheckSheet(sheet);
                }
                if (document.damage)
                {
                    findings.push_back(*document.damage);
                }
                else
                {
                    CheckEnd();
                }
                std::stable_sort(
                    findings.begin(), findings.end(),
                    [](const Finding& left, const Finding& right) { return left.offset < right.offset; });
                return std::move(findings);
            }

        private:
            void CheckDirectory();
            bool IsOpen(const Sheet& sheet) const;
            void CheckDirectoryEntry(const DirectoryEntry& entry, const Sheet& sheet, std::uint64_t sectionEnd);
            void CheckSheet(const Sheet& sheet);
            void CheckNames(const Sheet& sheet);
            void CheckSides(const Sheet& sheet);
            void CheckSurface(const Surface& surface);
            void CheckPreview(const Preview& preview);
            void CheckEndMark(const Preview& preview);
            void CheckForm(const Preview& preview);
            void CheckSize(const Preview& preview);
            void CheckEnd();

            std::uint64_t EndOfData(const Preview& preview) const
            {
                return document.OffsetOf(preview.data) + preview.data.size();
            }
            void Add(std::uint64_t offset, const std::string& text) { findings.push_back({offset, text}); }

            const Document& document;
            const CheckDepth depth;
            std::vector<Finding> findings;
        };

        /// Where a directory may let a sheet's section end. Writers differ in what they count after CIP3EndSheet, but
        /// one file keeps to one way.
        using SectionEnd = std::uint64_t (*)(const Sheet&);
        constexpr std::array<SectionEnd, 3> SectionEnds = {
            [](const Sheet& sheet) { return sheet.offset + sheet.length; },
            [](const Sheet& sheet) { return sheet.endOfLine; },
            [](const Sheet& sheet) { return sheet.endOfWord; },
        };

        /// Whether the reading broke off in this sheet: then what it lacks says nothing, as it may stand after the damage.
        bool Checker::IsOpen(const Sheet& sheet) const
        {
            return document.damage && sheet.length == 0;
        }

        void Checker::CheckDirectory()
        {
            const std::vector<DirectoryEntry>& entries = document.directory;
            const std::vector<Sheet>& sheets = document.sheets;
            const std::size_t count = std::min(entries.size(), sheets.size());
            const auto matches = [&](SectionEnd end)
            {
                std::size_t number = 0;
                for (std::size_t i = 0; i < count; ++i)
                {
                    number += entries[i].offset + entries[i].length == end(sheets[i]) ? 1 : 0;
                }
                return number;
            };
            const SectionEnd end = *std::max_element(
                SectionEnds.begin(), SectionEnds.end(),
                [&](SectionEnd left, SectionEnd right) { return matches(left) < matches(right); });
            for (std::size_t i = 0; i < count; ++i)
            {
                // Without an end there is nothing to hold a length against.
                CheckDirectoryEntry(
                    entries[i], sheets[i], IsOpen(sheets[i]) ? entries[i].offset + entries[i].length : end(sheets[i]));
            }
            if (document.hasDirectory && !document.damage && entries.size() != sheets.size())
            {
                Add(entries.empty() ? 0 : entries.back().position, "directory has " + std::to_string(entries.size()) +
                                                                       " entries for " + std::to_string(sheets.size()) +
                                                                       " sheets");
            }
        }

        void Checker::CheckDirectoryEntry(const DirectoryEntry& entry, const Sheet& sheet, std::uint64_t sectionEnd)
        {
            const std::string subject = "directory entry of sheet " + Quoted(entry.sheetName);
            if (entry.offset != sheet.offset)
            {
                Add(entry.position, subject + " gives offset " + std::to_string(entry.offset) +
                                        ", but the section begins at " + std::to_string(sheet.offset));
            }
            else if (entry.offset + entry.length != sectionEnd)
            {
                Add(entry.position, subject + " gives " + std::to_string(entry.length) +
                                        " bytes, but the section has " + std::to_string(sectionEnd - sheet.offset));
            }
            const std::string name = sheet.SheetName();
            if (entry.sheetName != name && (!name.empty() || !IsOpen(sheet)))
            {
                Add(entry.position, subject + " stands for a sheet that calls itself " + Quoted(name));
            }
        }

        void Checker::CheckSheet(const Sheet& sheet)
        {
            if (!sheet.Find(Key::JobName) && !IsOpen(sheet))
            {
                Add(sheet.offset, "sheet has no /CIP3AdmJobName");
            }
            if (!sheet.Find(Key::Extent) && !IsOpen(sheet))
            {
                Add(sheet.offset, "sheet has no /CIP3AdmPSExtent");
            }
            if (depth == CheckDepth::Everything)
            {
                CheckNames(sheet);
                CheckSides(sheet);
            }
            for (const Surface& surface : sheet.surfaces)
            {
                CheckSurface(surface);
            }
        }

        void Checker::CheckNames(const Sheet& sheet)
        {
            const std::optional<std::string_view> jobName = sheet.Find(Key::JobName);
            if (jobName && sheet.JobName().empty() && document.WhyLeftOut(*jobName) == nullptr)
            {
                Add(sheet.offset, "sheet's job has an empty name");
            }
            if (document.sheets.size() > 1 && sheet.SheetName().empty() && !IsOpen(sheet))
            {
                Add(sheet.offset, "sheet has no name, but is one of several");
            }
        }

        void Checker::CheckSides(const Sheet& sheet)
        {
            for (auto surface = sheet.surfaces.begin(); surface != sheet.surfaces.end(); ++surface)
            {
                const std::string name(NameOf(surface->side));
                if (std::any_of(
                        sheet.surfaces.begin(), surface,
                        [&](const Surface& other) { return other.side == surface->side; }))
                {
                    Add(surface->offset, "sheet has a second " + name);
                }
                if (surface->previews.empty() && surface->separationNames.empty() && !document.damage)
                {
                    Add(surface->offset, name + " has no separation");
                }
            }
        }

        void Checker::CheckSurface(const Surface& surface)
        {
            std::size_t inks = 0;
            for (const Preview& preview : surface.previews)
            {
                inks += preview.components;
                CheckPreview(preview);
            }
            // What the reading broke off in is not counted.
            if (!document.damage && inks != surface.separationNames.size())
            {
                Add(surface.offset, std::string(NameOf(surface.side)) + " has " +
                                        std::to_string(surface.separationNames.size()) + " separation names for " +
                                        std::to_string(inks) + " separations");
            }
        }

        void Checker::CheckPreview(const Preview& preview)
        {
            if (!preview.matrix)
            {
                Add(preview.offset, "preview image has no /CIP3PreviewImageMatrix");
            }
            else if (!Spans(*preview.matrix, preview.width, preview.height))
            {
                Add(preview.offset, "value of /CIP3PreviewImageMatrix does not fit the image's width and height");
            }
            if (!preview.resolution)
            {
                Add(preview.offset, "preview image has no /CIP3PreviewImageResolution");
            }
            const std::size_t before = findings.size();
            CheckEndMark(preview);
            if (depth == CheckDepth::Everything)
            {
                CheckForm(preview);
            }
            if (depth != CheckDepth::Structure && findings.size() == before)
            {
                CheckSize(preview);
            }
        }

        /// What data can be decoded without, and that says that a byte of it is lost.
        void Checker::CheckForm(const Preview& preview)
        {
            const std::uint64_t end = EndOfData(preview);
            const std::string_view after = document.bytes.substr(static_cast<std::size_t>(end), 1);
            if (preview.encoding == Encoding::Binary && !after.empty() && !IsWhiteSpace(after[0]))
            {
                Add(end, "no line end stands after the preview's data");
            }
            if (preview.encoding == Encoding::AsciiHex)
            {
                const auto digits = std::count_if(
                    preview.data.begin(), preview.data.end(), [](char c) { return !IsWhiteSpace(c) && c != '>'; });
                if (digits % 2 != 0)
                {
                    Add(end, "ASCIIHex data has an odd number of digits");
                }
            }
        }

        void Checker::CheckEndMark(const Preview& preview)
        {
            const auto endsWith = [&](std::string_view mark) {
                return preview.data.size() >= mark.size() &&
                       preview.data.substr(preview.data.size() - mark.size()) == mark;
            };
            const std::uint64_t end = EndOfData(preview);
            if (preview.encoding == Encoding::AsciiHex && !endsWith(Filter::AsciiHexEnd))
            {
                Add(end, "ASCIIHex data has no end mark \">\"");
            }
            // White space may stand within "~>", so its last character has to do.
            if (preview.encoding == Encoding::Ascii85 && !endsWith(Filter::Ascii85End.substr(1)))
            {
                Add(end, "ASCII85 data has no end mark \"~>\"");
            }
            if (preview.encoding == Encoding::Binary && preview.compression == Compression::None &&
                preview.data.size() != preview.StoredBytes())
            {
                Add(document.OffsetOf(preview.data), "preview has " + std::to_string(preview.data.size()) +
                                                         " bytes of data, but " + std::to_string(preview.width) +
                                                         " x " + std::to_string(preview.height) + " pixels need " +
                                                         std::to_string(preview.StoredBytes()));
            }
        }

        void Checker::CheckSize(const Preview& preview)
        {
            try
            {
                if (preview.compression == Compression::Dct || preview.compression == Compression::Unknown)
                {
                    ScanLineReader rows(document, preview);
                    while (rows.Next() != nullptr)
                    {
                    }
                    return;
                }
                const DecodedSize size = CountDecoded(document, preview);
                const bool isRunLength = preview.compression == Compression::RunLength;
                if (isRunLength && depth == CheckDepth::Everything && !size.hasEndMark)
                {
                    Add(EndOfData(preview), "run-length data has no end mark 128");
                }
                if (depth == CheckDepth::Everything && size.bytesAfterMark > 0)
                {
                    Add(document.OffsetOf(preview.data),
                        std::to_string(size.bytesAfterMark) + " bytes stand after the end mark of run-length data");
                }
                const std::uint64_t needed = preview.StoredBytes();
                if (size.bytes < needed)
                {
                    Add(EndOfData(preview), "preview's data ends in row " +
                                                std::to_string(size.bytes / preview.StoredRowBytes() + 1) + " of " +
                                                std::to_string(preview.height));
                }
                if (size.bytes > needed)
                {
                    Add(document.OffsetOf(preview.data),
                        "preview's data goes on for " + std::to_string(size.bytes - needed) + " bytes after the " +
                            std::to_string(needed) + " that " + std::to_string(preview.width) + " x " +
                            std::to_string(preview.height) + " pixels need");
                }
            }
            catch (const FormatError& error)
            {
                findings.push_back(error.AsFinding());
            }
        }

        void Checker::CheckEnd()
        {
            std::uint64_t end = document.end;
            const std::string_view bytes = document.bytes;
            // Serial lines add a Ctrl-D, which counts as nothing.
            constexpr char EndOfTransmission = 4;
            const auto isNothing = [](char c) { return IsWhiteSpace(c) || c == EndOfTransmission; };
            while (end < bytes.size() && isNothing(bytes[static_cast<std::size_t>(end)]))
            {
                ++end;
            }
            if (end < bytes.size())
            {
                Add(end, std::to_string(bytes.size() - end) + " bytes stand after the closing comment");
            }
        }
    }

    std::vector<Finding> Check(const Document& document, CheckDepth depth)
    {
        return Checker(document, depth).Findings();
    }

    std::vector<Finding> Check(std::string_view bytes, CheckDepth depth)
    {
        return Check(ReadDocument(bytes), depth);
    }
}
