#include "ppf/DocumentReader.h"

#include "ppf/DataFinder.h"
#include "ppf/Definition.h"
#include "ppf/InkNames.h"
#include "ppf/Keywords.h"
#include "ppf/Number.h"
#include "ppf/PreviewEntries.h"
#include "ppf/Scanner.h"

#include <algorithm>
#include <utility>

namespace Ppf
{
    namespace
    {
        /// What a vector takes per element at most: while it grows, the old elements and twice as many new ones.
        constexpr std::size_t Growth = 3;
        /// What a block of memory takes beside its bytes.
        constexpr std::size_t BlockOverhead = 16;

        enum class Kind
        {
            File,
            Directory,
            Sheet,
            Surface,
            PreviewImage,
            Separation,
            Unknown
        };

        /// A section that has begun and not ended.
        struct Section
        {
            Kind kind;
            /// After CIP3Begin.
            std::string_view name;
            std::uint64_t offset;
            PreviewEntries entries;
            bool hasImage = false;
        };

        Kind KindOf(std::string_view name)
        {
            return name == Word::Directory                     ? Kind::Directory
                   : name == Word::Sheet                       ? Kind::Sheet
                   : name == Word::Front || name == Word::Back ? Kind::Surface
                   : name == Word::PreviewImage                ? Kind::PreviewImage
                   : name == Word::Separation                  ? Kind::Separation
                                                               : Kind::Unknown;
        }

        std::string Described(const Section& section)
        {
            return "the section CIP3Begin" + Shown(section.name) + " that begins at byte " +
                   std::to_string(section.offset);
        }

        /// Whether the reader cannot do without the entry once its key stands there.
        bool IsNeeded(std::string_view key)
        {
            return key == Key::JobName || key == Key::SheetName || key == Key::Extent || key == Key::SeparationNames ||
                   PreviewEntries().Take({key, {}});
        }

        bool MayStandIn(Kind inner, Kind outer)
        {
            switch (inner)
            {
            case Kind::Directory:
            case Kind::Sheet:
                return outer == Kind::File;
            case Kind::Surface:
                return outer == Kind::Sheet;
            case Kind::PreviewImage:
                return outer == Kind::Surface;
            case Kind::Separation:
                return outer == Kind::PreviewImage;
            default:
                return true;
            }
        }

        /// The offset after blanks and one line end, or the one given if no line end follows.
        std::uint64_t BehindLineEnd(std::string_view bytes, std::uint64_t offset)
        {
            const auto begin = static_cast<std::size_t>(offset);
            const std::size_t at = std::min(bytes.find_first_not_of(" \t", begin), bytes.size());
            const std::string_view next = bytes.substr(at, 2);
            if (next == "\r\n")
            {
                return at + 2;
            }
            return !next.empty() && (next[0] == '\n' || next[0] == '\r') ? at + 1 : offset;
        }

        class DocumentReader
        {
        public:
            DocumentReader(std::string_view bytes, const Limits& theLimits)
                : limits(theLimits)
                , scanner(bytes)
                , dataFinder(bytes)
            {
                document.bytes = bytes;
            }

            Document Read()
            {
                try
                {
                    ReadHeader();
                    sections.push_back({Kind::File, "", 0, {}, false});
                    while (ReadStatement())
                    {
                    }
                    document.end = scanner.Position();
                }
                catch (const FormatError& error)
                {
                    document.damage = error.AsFinding();
                }
                AssignInkNames(document, limits.memory - std::min(charged, limits.memory), limits.mostSeparations);
                return std::move(document);
            }

        private:
            void ReadHeader();
            bool ReadStatement();
            void ReadName(const Token& name);
            void SkipProcedure(const Token& begin);
            void ReadWord(std::string_view text);
            void Keep(const Entry& entry);
            void BeginSection(std::string_view name, std::uint64_t offset);
            void EndSection(std::string_view name, std::uint64_t offset);
            void EndSheet();
            void ReadDirectoryEntry(std::uint64_t offset);
            void ReadPreview(std::uint64_t offset);
            bool EndDocument(const Token& comment);
            void Charge(std::uint64_t offset, std::size_t bytes);

            std::uint64_t OffsetOf(const Token& token) const { return document.OffsetOf(token.text); }
            Surface& CurrentSurface() { return document.sheets.back().surfaces.back(); }

            const Limits limits;
            Document document;
            Scanner scanner;
            DataFinder dataFinder;
            std::vector<Section> sections;
            /// The last tokens of the directory that are not words: the operands of its next entry.
            std::vector<Token> operands;
            /// Offset up to which a search for a "def" has found none.
            std::uint64_t searchedTo = 0;
            /// What the records take, in bytes, and those of the last sheet.
            std::size_t charged = 0;
            std::size_t chargedOfSheet = 0;
        };

        void DocumentReader::ReadHeader()
        {
            const std::string_view bytes = document.bytes;
            if (!StartsWith(bytes, Word::Magic))
            {
                throw FormatError(0, "not a print production file: it does not begin with \"%!PS\"");
            }
            for (Token token = scanner.Next(); token.kind == TokenKind::Comment; token = scanner.Next())
            {
                if (StartsWith(token.text, Word::Version))
                {
                    const std::string_view version = Trimmed(token.text.substr(Word::Version.size()));
                    document.version = version.substr(0, limits.longestValue);
                    return;
                }
            }
            throw FormatError(0, "not a print production file: its header has no \"%%CIP3-File Version\"");
        }

        /// Reads up to the end of one definition, word or comment. Returns false after the closing comment.
        bool DocumentReader::ReadStatement()
        {
            const Token token = scanner.Next();
            const Section& section = sections.back();
            const bool isWord = token.kind == TokenKind::ExecutableName;
            const bool isOperand = token.kind == TokenKind::Number || token.kind == TokenKind::String ||
                                   token.kind == TokenKind::Open || token.kind == TokenKind::Close;
            if (section.hasImage && (isOperand || (isWord && !StartsWith(token.text, Word::End))))
            {
                throw FormatError(OffsetOf(token), "preview image data is not followed by the end of its section");
            }
            switch (token.kind)
            {
            case TokenKind::End:
                throw FormatError(
                    OffsetOf(token), section.kind == Kind::File
                                         ? "file has no closing comment \"%%CIP3EndOfFile\": its end is missing"
                                         : "file ends within " + Described(section));
            case TokenKind::Comment:
                return !EndDocument(token);
            case TokenKind::LiteralName:
                ReadName(token);
                return true;
            case TokenKind::ExecutableName:
                ReadWord(token.text);
                return true;
            case TokenKind::Open:
                if (token.text == "{")
                {
                    SkipProcedure(token);
                    return true;
                }
                [[fallthrough]];
            default:
                if (section.kind == Kind::Directory)
                {
                    constexpr std::size_t OperandsOfEntry = 3;
                    operands.push_back(token);
                    if (operands.size() > OperandsOfEntry)
                    {
                        operands.erase(operands.begin());
                    }
                }
                return true;
            }
        }

        /// A name is the key of an entry or an operand of some other word: "/cross 5 Mark", "/Helvetica findfont".
        void DocumentReader::ReadName(const Token& name)
        {
            if (sections.back().kind == Kind::Unknown)
            {
                return;
            }
            if (IsNeeded(name.text.substr(1)))
            {
                Keep(ReadDefinition(scanner, name, document.bytes));
            }
            // A name that another search for a "def" has passed over in vain would send out the same search again.
            else if (OffsetOf(name) >= searchedTo)
            {
                const std::uint64_t after = scanner.Position();
                const Definition definition = TryDefinition(scanner, name, document.bytes);
                if (definition.entry)
                {
                    Keep(*definition.entry);
                    return;
                }
                searchedTo = OffsetOf(definition.last);
                scanner.MoveTo(after);
            }
        }

        /// Passes over a procedure that is not an entry's value: its words are not executed here.
        void DocumentReader::SkipProcedure(const Token& begin)
        {
            for (std::uint64_t depth = 1; depth > 0;)
            {
                const Token token = scanner.Next();
                if (token.kind == TokenKind::End)
                {
                    throw FormatError(OffsetOf(begin), "procedure is not closed");
                }
                depth += token.text == "{" ? 1u : 0u;
                depth -= token.text == "}" ? 1u : 0u;
            }
        }

        void DocumentReader::ReadWord(std::string_view text)
        {
            const std::uint64_t offset = document.OffsetOf(text);
            if (StartsWith(text, Word::Begin))
            {
                BeginSection(text.substr(Word::Begin.size()), offset);
            }
            else if (StartsWith(text, Word::End))
            {
                EndSection(text.substr(Word::End.size()), offset);
            }
            else if (text == Word::DirectoryEntry && sections.back().kind == Kind::Directory)
            {
                ReadDirectoryEntry(offset);
            }
            else if (text == Word::Image && sections.back().kind != Kind::Unknown)
            {
                ReadPreview(offset);
            }
        }

        void DocumentReader::Keep(const Entry& entry)
        {
            Section& section = sections.back();
            if (section.kind == Kind::Unknown || section.entries.Take(entry))
            {
                return;
            }
            const bool ofSheet = section.kind == Kind::Sheet;
            const bool ofSurface = section.kind == Kind::Surface || section.kind == Kind::PreviewImage;
            if (!ofSheet && !ofSurface)
            {
                return;
            }
            const std::uint64_t offset = document.OffsetOf(entry.value);
            const bool isLong = entry.value.size() > limits.longestValue || entry.key.size() > limits.longestValue;
            Charge(offset, Growth * (sizeof(Entry) + (isLong ? sizeof(Finding) + 2 * BlockOverhead + 160 : 0)));
            if (isLong)
            {
                document.remarks.push_back(
                    {offset, "value of /" + Shown(entry.key) + " has " + std::to_string(entry.value.size()) +
                                 " bytes and is left out; the most that is read is " +
                                 std::to_string(limits.longestValue)});
            }
            const Entry kept = {
                entry.key.substr(0, limits.longestValue), isLong ? entry.value.substr(0, 0) : entry.value};
            (ofSheet ? document.sheets.back().entries : CurrentSurface().entries).push_back(kept);
        }

        void DocumentReader::BeginSection(std::string_view name, std::uint64_t offset)
        {
            const Section& outer = sections.back();
            const Kind kind = outer.kind == Kind::Unknown ? Kind::Unknown : KindOf(name);
            if (!MayStandIn(kind, outer.kind))
            {
                throw FormatError(
                    offset, "CIP3Begin" + Shown(name) + " stands " +
                                (outer.kind == Kind::File ? "outside the section that it belongs to"
                                                          : "within CIP3Begin" + Shown(outer.name)));
            }
            if (sections.size() > DeepestNesting)
            {
                throw FormatError(offset, "sections are nested too deeply");
            }
            if (kind == Kind::Directory)
            {
                document.hasDirectory = true;
                operands.clear();
            }
            else if (kind == Kind::Sheet)
            {
                chargedOfSheet = 0;
                Charge(offset, Growth * sizeof(Sheet) + 2 * BlockOverhead);
                document.sheets.emplace_back();
                document.sheets.back().offset = offset;
            }
            else if (kind == Kind::Surface)
            {
                Charge(offset, Growth * sizeof(Surface) + 3 * BlockOverhead);
                document.sheets.back().surfaces.emplace_back();
                CurrentSurface().side = name == Word::Front ? Side::Front : Side::Back;
                CurrentSurface().offset = offset;
            }
            sections.push_back({kind, name, offset, outer.entries, false});
        }

        void DocumentReader::EndSection(std::string_view name, std::uint64_t offset)
        {
            const Section& section = sections.back();
            if (section.kind == Kind::File || section.name != name)
            {
                throw FormatError(
                    offset, "CIP3End" + Shown(name) +
                                (section.kind == Kind::File ? " ends no section"
                                                            : " stands where CIP3End" + Shown(section.name) +
                                                                  " is due, the end of " + Described(section)));
            }
            if (section.kind == Kind::Separation && !section.hasImage)
            {
                throw FormatError(offset, "separation has no preview image");
            }
            if (section.kind == Kind::Sheet)
            {
                EndSheet();
            }
            sections.pop_back();
        }

        void DocumentReader::EndSheet()
        {
            Sheet& sheet = document.sheets.back();
            sheet.endOfWord = scanner.Position();
            sheet.endOfLine = BehindLineEnd(document.bytes, sheet.endOfWord);
            sheet.length = BehindLineEnd(document.bytes, sheet.endOfLine) - sheet.offset;
        }

        void DocumentReader::ReadDirectoryEntry(std::uint64_t offset)
        {
            const std::optional<std::int64_t> sheetOffset =
                operands.size() == 3 ? IntegerOf(operands[0].text) : std::nullopt;
            const std::optional<std::int64_t> length =
                operands.size() == 3 ? IntegerOf(operands[1].text) : std::nullopt;
            if (!sheetOffset || !length || *sheetOffset < 0 || *length < 0 || operands[2].kind != TokenKind::String ||
                operands[2].text.size() > limits.longestValue)
            {
                throw FormatError(offset, "directory entry is not an offset, a length and a name in parentheses");
            }
            Charge(offset, Growth * sizeof(DirectoryEntry) + BlockOverhead + operands[2].text.size());
            document.directory.push_back(
                {OffsetOf(operands[0]), static_cast<std::uint64_t>(*sheetOffset), static_cast<std::uint64_t>(*length),
                 DecodedName(operands[2].text)});
            operands.clear();
        }

        void DocumentReader::ReadPreview(std::uint64_t offset)
        {
            Section& section = sections.back();
            if (section.kind != Kind::Separation && section.kind != Kind::PreviewImage)
            {
                throw FormatError(offset, "CIP3PreviewImage stands outside a separation");
            }
            if (section.hasImage)
            {
                throw FormatError(offset, "section has a second preview image");
            }
            Preview preview = section.entries.MakePreview(document.bytes, offset);
            // The inks that AssignInkNames adds are part of the price, names too long for a string's own memory too.
            Charge(offset, Growth * sizeof(Preview) + BlockOverhead + preview.components * (sizeof(std::string) + 32));
            preview.data = dataFinder.Find(scanner.Position(), preview);
            scanner.MoveTo(document.OffsetOf(preview.data) + preview.data.size());
            section.hasImage = true;
            CurrentSurface().previews.push_back(std::move(preview));
        }

        void DocumentReader::Charge(std::uint64_t offset, std::size_t bytes)
        {
            constexpr std::size_t ShareOfSheet = 3;
            charged += bytes;
            chargedOfSheet += bytes;
            if (charged > limits.memory || chargedOfSheet > limits.memory / ShareOfSheet)
            {
                throw FormatError(offset, "file has more sections and entries than any job; reading stops here");
            }
        }

        /// True if the comment closes the document.
        bool DocumentReader::EndDocument(const Token& comment)
        {
            if (!StartsWith(comment.text, Word::EndOfFile))
            {
                return false;
            }
            const Section& section = sections.back();
            if (section.kind != Kind::File)
            {
                throw FormatError(OffsetOf(comment), "file ends within " + Described(section));
            }
            return true;
        }
    }

    Document ReadDocument(std::string_view bytes, const Limits& limits)
    {
        return DocumentReader(bytes, limits).Read();
    }
}
