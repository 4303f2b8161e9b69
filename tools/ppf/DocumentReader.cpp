// A stack of open sections that statements are read into, one after the other, until the closing comment or a fault.
#include "ppf/DocumentReader.h"

#include <algorithm>
#include <utility>

#include "ppf/DataFinder.h"
#include "ppf/Definition.h"
#include "ppf/InkNames.h"
#include "ppf/Keywords.h"
#include "ppf/Number.h"
#include "ppf/PreviewEntries.h"
#include "ppf/Scanner.h"

namespace ppf
{
    namespace
    {
        /// What a vector takes per element at most: while it grows, the old elements and twice as many new ones.
        constexpr std::size_t growth = 3;
        /// What a block of memory takes beside its bytes.
        constexpr std::size_t blockOverhead = 16;
        /// The longest value that is kept as an entry, in bytes.
        constexpr std::size_t longestValue = 64u << 10;

        enum class Kind
        {
            file,
            directory,
            sheet,
            surface,
            previewImage,
            separation,
            unknown
        };

        /// A section that has begun and not ended.
        struct Section
        {
            Kind kind;
            /// Behind CIP3Begin.
            std::string_view name;
            std::uint64_t offset;
            PreviewEntries entries;
            bool hasImage = false;
        };

        Kind KindOf(std::string_view name)
        {
            return name == word::directory                     ? Kind::directory
                   : name == word::sheet                       ? Kind::sheet
                   : name == word::front || name == word::back ? Kind::surface
                   : name == word::previewImage                ? Kind::previewImage
                   : name == word::separation                  ? Kind::separation
                                                               : Kind::unknown;
        }

        std::string Described(const Section& section)
        {
            return "the section CIP3Begin" + Shown(section.name) + " that begins at byte " +
                   std::to_string(section.offset);
        }

        /// Whether the reader cannot do without the entry once its key stands there.
        bool IsNeeded(std::string_view key)
        {
            return key == key::jobName || key == key::sheetName || key == key::extent || key == key::separationNames ||
                   PreviewEntries().Take({key, {}});
        }

        bool MayStandIn(Kind inner, Kind outer)
        {
            switch (inner)
            {
            case Kind::directory:
            case Kind::sheet:
                return outer == Kind::file;
            case Kind::surface:
                return outer == Kind::sheet;
            case Kind::previewImage:
                return outer == Kind::surface;
            case Kind::separation:
                return outer == Kind::previewImage;
            default:
                return true;
            }
        }

        /// The offset behind blanks and one line end, or the one given if no line end follows.
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
            DocumentReader(std::string_view bytes, std::size_t memory)
                : m_memory(memory)
                , m_scanner(bytes)
                , m_dataFinder(bytes)
            {
                m_document.bytes = bytes;
            }

            Document Read()
            {
                try
                {
                    ReadHeader();
                    m_sections.push_back({Kind::file, "", 0, {}, false});
                    while (ReadStatement())
                    {
                    }
                    m_document.end = m_scanner.Position();
                }
                catch (const FormatError& error)
                {
                    m_document.damage = error.AsFinding();
                }
                AssignInkNames(m_document, m_memory - std::min(m_charged, m_memory));
                return std::move(m_document);
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

            std::uint64_t OffsetOf(const Token& token) const { return m_document.OffsetOf(token.text); }
            Surface& CurrentSurface() { return m_document.sheets.back().surfaces.back(); }

            const std::size_t m_memory;
            Document m_document;
            Scanner m_scanner;
            DataFinder m_dataFinder;
            std::vector<Section> m_sections;
            /// The last tokens of the directory that are no word: the operands of its next entry.
            std::vector<Token> m_operands;
            /// Offset up to which a search for a "def" has found none.
            std::uint64_t m_searchedTo = 0;
            /// What the records take, in bytes, and those of the last sheet.
            std::size_t m_charged = 0;
            std::size_t m_chargedOfSheet = 0;
        };

        void DocumentReader::ReadHeader()
        {
            const std::string_view bytes = m_document.bytes;
            if (!StartsWith(bytes, word::magic))
            {
                throw FormatError(0, "not a print production file: it does not begin with \"%!PS\"");
            }
            for (Token token = m_scanner.Next(); token.kind == TokenKind::comment; token = m_scanner.Next())
            {
                if (StartsWith(token.text, word::version))
                {
                    const std::string_view version = Trimmed(token.text.substr(word::version.size()));
                    m_document.version = version.substr(0, longestValue);
                    return;
                }
            }
            throw FormatError(0, "not a print production file: its header has no \"%%CIP3-File Version\"");
        }

        /// Reads up to the end of one definition, word or comment. Returns false behind the closing comment.
        bool DocumentReader::ReadStatement()
        {
            const Token token = m_scanner.Next();
            const Section& section = m_sections.back();
            const bool isWord = token.kind == TokenKind::executableName;
            const bool isOperand = token.kind == TokenKind::number || token.kind == TokenKind::string ||
                                   token.kind == TokenKind::open || token.kind == TokenKind::close;
            if (section.hasImage && (isOperand || (isWord && !StartsWith(token.text, word::end))))
            {
                throw FormatError(OffsetOf(token), "preview image data is not followed by the end of its section");
            }
            switch (token.kind)
            {
            case TokenKind::end:
                throw FormatError(
                    OffsetOf(token), section.kind == Kind::file
                                         ? "file has no closing comment \"%%CIP3EndOfFile\": its end is missing"
                                         : "file ends within " + Described(section));
            case TokenKind::comment:
                return !EndDocument(token);
            case TokenKind::literalName:
                ReadName(token);
                return true;
            case TokenKind::executableName:
                ReadWord(token.text);
                return true;
            case TokenKind::open:
                if (token.text == "{")
                {
                    SkipProcedure(token);
                    return true;
                }
                [[fallthrough]];
            default:
                if (section.kind == Kind::directory)
                {
                    constexpr std::size_t operandsOfEntry = 3;
                    m_operands.push_back(token);
                    if (m_operands.size() > operandsOfEntry)
                    {
                        m_operands.erase(m_operands.begin());
                    }
                }
                return true;
            }
        }

        /// A name is the key of an entry or an operand of some other word: "/cross 5 Mark", "/Helvetica findfont".
        void DocumentReader::ReadName(const Token& name)
        {
            if (m_sections.back().kind == Kind::unknown)
            {
                return;
            }
            if (IsNeeded(name.text.substr(1)))
            {
                Keep(ReadDefinition(m_scanner, name, m_document.bytes));
            }
            // A name that another search for a "def" has passed over in vain would send out the same search again.
            else if (OffsetOf(name) >= m_searchedTo)
            {
                const std::uint64_t behind = m_scanner.Position();
                const Definition definition = TryDefinition(m_scanner, name, m_document.bytes);
                if (definition.entry)
                {
                    Keep(*definition.entry);
                    return;
                }
                m_searchedTo = OffsetOf(definition.last);
                m_scanner.MoveTo(behind);
            }
        }

        /// Passes over a procedure that is no entry's value: its words are not executed here.
        void DocumentReader::SkipProcedure(const Token& begin)
        {
            for (std::uint64_t depth = 1; depth > 0;)
            {
                const Token token = m_scanner.Next();
                if (token.kind == TokenKind::end)
                {
                    throw FormatError(OffsetOf(begin), "procedure is not closed");
                }
                depth += token.text == "{" ? 1u : 0u;
                depth -= token.text == "}" ? 1u : 0u;
            }
        }

        void DocumentReader::ReadWord(std::string_view text)
        {
            const std::uint64_t offset = m_document.OffsetOf(text);
            if (StartsWith(text, word::begin))
            {
                BeginSection(text.substr(word::begin.size()), offset);
            }
            else if (StartsWith(text, word::end))
            {
                EndSection(text.substr(word::end.size()), offset);
            }
            else if (text == word::directoryEntry && m_sections.back().kind == Kind::directory)
            {
                ReadDirectoryEntry(offset);
            }
            else if (text == word::image && m_sections.back().kind != Kind::unknown)
            {
                ReadPreview(offset);
            }
        }

        void DocumentReader::Keep(const Entry& entry)
        {
            Section& section = m_sections.back();
            if (section.kind == Kind::unknown || section.entries.Take(entry))
            {
                return;
            }
            const bool ofSheet = section.kind == Kind::sheet;
            const bool ofSurface = section.kind == Kind::surface || section.kind == Kind::previewImage;
            if (!ofSheet && !ofSurface)
            {
                return;
            }
            const std::uint64_t offset = m_document.OffsetOf(entry.value);
            const bool isLong = entry.value.size() > longestValue || entry.key.size() > longestValue;
            Charge(offset, growth * (isLong ? sizeof(Finding) + 2 * blockOverhead + 160 : sizeof(Entry)));
            if (isLong)
            {
                m_document.remarks.push_back(
                    {offset, "value of /" + Shown(entry.key) + " has " + std::to_string(entry.value.size()) +
                                 " bytes and is left out"});
                return;
            }
            (ofSheet ? m_document.sheets.back().entries : CurrentSurface().entries).push_back(entry);
        }

        void DocumentReader::BeginSection(std::string_view name, std::uint64_t offset)
        {
            const Section& outer = m_sections.back();
            const Kind kind = outer.kind == Kind::unknown ? Kind::unknown : KindOf(name);
            if (!MayStandIn(kind, outer.kind))
            {
                throw FormatError(
                    offset, "CIP3Begin" + Shown(name) + " stands " +
                                (outer.kind == Kind::file ? "outside the section that it belongs to"
                                                          : "within CIP3Begin" + Shown(outer.name)));
            }
            if (m_sections.size() > deepestNesting)
            {
                throw FormatError(offset, "sections are nested too deeply");
            }
            if (kind == Kind::directory)
            {
                m_document.hasDirectory = true;
                m_operands.clear();
            }
            else if (kind == Kind::sheet)
            {
                m_chargedOfSheet = 0;
                Charge(offset, growth * sizeof(Sheet) + 2 * blockOverhead);
                m_document.sheets.emplace_back();
                m_document.sheets.back().offset = offset;
            }
            else if (kind == Kind::surface)
            {
                Charge(offset, growth * sizeof(Surface) + 3 * blockOverhead);
                m_document.sheets.back().surfaces.emplace_back();
                CurrentSurface().side = name == word::front ? Side::front : Side::back;
                CurrentSurface().offset = offset;
            }
            m_sections.push_back({kind, name, offset, outer.entries, false});
        }

        void DocumentReader::EndSection(std::string_view name, std::uint64_t offset)
        {
            const Section& section = m_sections.back();
            if (section.kind == Kind::file || section.name != name)
            {
                throw FormatError(
                    offset, "CIP3End" + Shown(name) +
                                (section.kind == Kind::file ? " ends no section"
                                                            : " stands where CIP3End" + Shown(section.name) +
                                                                  " is due, the end of " + Described(section)));
            }
            if (section.kind == Kind::separation && !section.hasImage)
            {
                throw FormatError(offset, "separation has no preview image");
            }
            if (section.kind == Kind::sheet)
            {
                EndSheet();
            }
            m_sections.pop_back();
        }

        void DocumentReader::EndSheet()
        {
            Sheet& sheet = m_document.sheets.back();
            sheet.endOfWord = m_scanner.Position();
            sheet.endOfLine = BehindLineEnd(m_document.bytes, sheet.endOfWord);
            sheet.length = BehindLineEnd(m_document.bytes, sheet.endOfLine) - sheet.offset;
        }

        void DocumentReader::ReadDirectoryEntry(std::uint64_t offset)
        {
            const std::optional<std::int64_t> sheetOffset =
                m_operands.size() == 3 ? IntegerOf(m_operands[0].text) : std::nullopt;
            const std::optional<std::int64_t> length =
                m_operands.size() == 3 ? IntegerOf(m_operands[1].text) : std::nullopt;
            if (!sheetOffset || !length || *sheetOffset < 0 || *length < 0 || m_operands[2].kind != TokenKind::string ||
                m_operands[2].text.size() > longestValue)
            {
                throw FormatError(offset, "directory entry is not an offset, a length and a name in parentheses");
            }
            Charge(offset, growth * sizeof(DirectoryEntry) + blockOverhead + m_operands[2].text.size());
            m_document.directory.push_back(
                {OffsetOf(m_operands[0]), static_cast<std::uint64_t>(*sheetOffset), static_cast<std::uint64_t>(*length),
                 DecodedName(m_operands[2].text)});
            m_operands.clear();
        }

        void DocumentReader::ReadPreview(std::uint64_t offset)
        {
            Section& section = m_sections.back();
            if (section.kind != Kind::separation && section.kind != Kind::previewImage)
            {
                throw FormatError(offset, "CIP3PreviewImage stands outside a separation");
            }
            if (section.hasImage)
            {
                throw FormatError(offset, "section has a second preview image");
            }
            Preview preview = section.entries.MakePreview(m_document.bytes, offset);
            // The inks that AssignInkNames adds are part of the price, names too long for a string's own memory too.
            Charge(offset, growth * sizeof(Preview) + blockOverhead + preview.components * (sizeof(std::string) + 32));
            preview.data = m_dataFinder.Find(m_scanner.Position(), preview);
            m_scanner.MoveTo(m_document.OffsetOf(preview.data) + preview.data.size());
            section.hasImage = true;
            CurrentSurface().previews.push_back(std::move(preview));
        }

        void DocumentReader::Charge(std::uint64_t offset, std::size_t bytes)
        {
            constexpr std::size_t shareOfSheet = 3;
            m_charged += bytes;
            m_chargedOfSheet += bytes;
            if (m_charged > m_memory || m_chargedOfSheet > m_memory / shareOfSheet)
            {
                throw FormatError(offset, "file has more sections and entries than any job; reading stops here");
            }
        }

        /// True if the comment closes the document.
        bool DocumentReader::EndDocument(const Token& comment)
        {
            if (!StartsWith(comment.text, word::endOfFile))
            {
                return false;
            }
            const Section& section = m_sections.back();
            if (section.kind != Kind::file)
            {
                throw FormatError(OffsetOf(comment), "file ends within " + Described(section));
            }
            return true;
        }
    }

    Document ReadDocument(std::string_view bytes, std::size_t memory)
    {
        return DocumentReader(bytes, memory).Read();
    }
}
