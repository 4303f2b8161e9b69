#include "ppf/DataFinder.h"

#include "ppf/Keywords.h"
#include "ppf/RunLengthLanes.h"
#include "ppf/RunLengthToken.h"
#include "ppf/Scanner.h"

#include <algorithm>
#include <string>

namespace Ppf
{
    namespace
    {
        constexpr std::size_t NotFound = std::string_view::npos;

        /// Line ends and a blank that may stand between the word and binary data.
        constexpr std::size_t LongestGap = 3;

        /// How well a start fits that leads to data of the preview's size with one line end after it.
        constexpr int BestFit = 3;

        /// How often the walks through run-length data may pass over as many bytes as the file has before the first
        /// start has to do. Only a file made for it brings walks that begin at the wrong byte past their own data.
        constexpr std::uint64_t MostWalks = 16;

        /// White space that is looked through after data, in bytes. A bound, so that previews which all claim to end
        /// in the same wide blank cost no more than they have bytes.
        constexpr std::size_t LongestWhiteSpace = 4096;

        /// A letter of CIP3PreviewImage that neither ASCIIHex nor ASCII85 data can hold: where it stands, another
        /// section has begun.
        constexpr char LetterOfWords = 'v';

        bool IsLineEnd(std::string_view text)
        {
            return text == "\n" || text == "\r" || text == "\r\n";
        }

        /// What stands between the word and its data where that is more than one character: a line end, with a blank in
        /// front of it at most.
        bool IsUsualGap(std::string_view text)
        {
            return IsLineEnd(text.substr(text.substr(0, 1) == " " ? 1 : 0));
        }

        /// What closes the section that a preview image stands in, after "CIP3End".
        bool IsEndOfImageSection(std::string_view rest)
        {
            return rest.substr(0, Word::Separation.size()) == Word::Separation ||
                   rest.substr(0, Word::PreviewImage.size()) == Word::PreviewImage;
        }

        namespace Jpeg
        {
            constexpr unsigned char Mark = 0xFF;
            constexpr unsigned char Stuffed = 0x00;
            constexpr unsigned char Temporary = 0x01;
            constexpr unsigned char FirstRestart = 0xD0;
            constexpr unsigned char StartOfImage = 0xD8;
            constexpr unsigned char EndOfImage = 0xD9;
            constexpr unsigned char StartOfScan = 0xDA;
        }
    }

    std::string_view DataFinder::Find(std::uint64_t begin, const Preview& preview)
    {
        auto at = static_cast<std::size_t>(begin);
        if (preview.encoding != Encoding::Binary)
        {
            at = SkipWhiteSpace(at, bytes.size());
            const bool isHex = preview.encoding == Encoding::AsciiHex;
            const std::size_t end = TextEnd(at, isHex ? Filter::AsciiHexEnd : Filter::Ascii85End);
            return bytes.substr(at, end - at);
        }
        if (at < bytes.size() && !IsWhiteSpace(bytes[at]))
        {
            throw FormatError(begin, "no white space stands between CIP3PreviewImage and its data");
        }
        // The one white space character after the word belongs to it. Some writers put a whole line end there, which
        // can be data as well: 10 is a length byte, and 0 as a pixel is white space. What is told apart by is the size
        // of the data, then that one line end stands after it. The start right after one character is the first.
        const std::size_t first = std::min(at + 1, bytes.size());
        const std::size_t gapEnd = std::min(first + LongestGap, bytes.size());
        std::string_view found;
        int foundFit = -1;
        for (std::size_t start = first;; ++start)
        {
            const DataEnd end = BinaryEnd(start, preview);
            if (end.at != NotFound && SectionEndsAfter(end.at))
            {
                const std::string_view after = bytes.substr(end.at, SkipWhiteSpace(end.at, LongestWhiteSpace) - end.at);
                const bool isUsual = IsLineEnd(after) && (start == first || IsUsualGap(bytes.substr(at, start - at)));
                const int fit = (end.hasSize ? 2 : 0) + (isUsual ? 1 : 0);
                if (fit > foundFit)
                {
                    found = bytes.substr(start, end.at - start);
                    foundFit = fit;
                }
            }
            const bool mayGoOn =
                start != gapEnd && (bytes[start] == '\n' || bytes[start] == '\r' || bytes[start] == ' ');
            if (foundFit == BestFit || !mayGoOn || walked / MostWalks > bytes.size())
            {
                break;
            }
        }
        if (found.data() != nullptr)
        {
            return found;
        }
        if (preview.compression != Compression::None)
        {
            throw FormatError(
                first, std::string(preview.compressionName) + " data does not lead to the end of its section");
        }
        return bytes.substr(first, EndBySection(first) - first);
    }

    DataFinder::DataEnd DataFinder::BinaryEnd(std::size_t begin, const Preview& preview)
    {
        switch (preview.compression)
        {
        case Compression::RunLength:
        {
            const DataEnd end = RunLengthEnd(begin, preview);
            walked += std::min(end.at, bytes.size()) - begin;
            return end;
        }
        case Compression::Dct:
            return {DctEnd(begin), true};
        default:
        {
            const bool fits = preview.StoredBytes() <= bytes.size() - begin;
            return {fits ? begin + static_cast<std::size_t>(preview.StoredBytes()) : NotFound, true};
        }
        }
    }

    DataFinder::DataEnd DataFinder::RunLengthEnd(std::size_t begin, const Preview& preview) const
    {
        const std::uint64_t size = preview.StoredBytes();
        const RunLengthPlace place = PassTokens(bytes, begin, size);
        std::uint64_t passed = place.passed;
        for (std::size_t i = place.at; i < bytes.size();)
        {
            const auto length = static_cast<unsigned char>(bytes[i]);
            if (length == Filter::RunLengthEnd)
            {
                return {i + 1, passed == size};
            }
            const RunLengthToken token(length);
            const bool wasIncomplete = passed < size;
            passed += token.Run();
            i += 1 + token.DataBytes();
            // A file may leave the end mark out where the size is complete. Looked at once: data that goes on after
            // its size needs the mark.
            if (wasIncomplete && passed >= size && i <= bytes.size() &&
                (i == bytes.size() || static_cast<unsigned char>(bytes[i]) != Filter::RunLengthEnd) &&
                SectionEndsAfter(i))
            {
                return {i, passed == size};
            }
        }
        return {NotFound, false};
    }

    std::size_t DataFinder::DctEnd(std::size_t begin) const
    {
        const auto at = [&](std::size_t i)
        { return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : Jpeg::Stuffed; };
        if (at(begin) != Jpeg::Mark || at(begin + 1) != Jpeg::StartOfImage)
        {
            return NotFound;
        }
        bool inScan = false;
        for (std::size_t i = begin + 2; i < bytes.size();)
        {
            i = inScan ? bytes.find(static_cast<char>(Jpeg::Mark), i) : i;
            if (i == NotFound || at(i) != Jpeg::Mark)
            {
                return NotFound;
            }
            const unsigned char code = at(i + 1);
            const bool isData = code == Jpeg::Stuffed && inScan;
            const bool isRestart = code >= Jpeg::FirstRestart && code < Jpeg::StartOfImage;
            if (code == Jpeg::EndOfImage)
            {
                return std::min(i + 2, bytes.size());
            }
            if (code == Jpeg::Mark)
            {
                i += 1;
            }
            else if (isData || isRestart || code == Jpeg::Temporary)
            {
                i += 2;
            }
            else
            {
                i += 2 + 256u * at(i + 2) + at(i + 3);
                inScan = code == Jpeg::StartOfScan;
            }
        }
        return NotFound;
    }

    std::size_t DataFinder::TextEnd(std::size_t begin, std::string_view mark) const
    {
        // A mark that is missing here must not be found in the next section.
        const std::string_view section = bytes.substr(0, bytes.find(LetterOfWords, begin));
        // "<~" may open ASCII85 data; its "~" is not that of the end mark.
        const bool isOpened = section.substr(begin, 2) == Filter::Ascii85Begin && mark == Filter::Ascii85End;
        std::size_t last = section.find(mark[0], begin + (isOpened ? Filter::Ascii85Begin.size() : 0));
        if (last != NotFound && mark.size() > 1)
        {
            // White space may stand between the two characters of a mark.
            last = SkipWhiteSpace(last + 1, LongestWhiteSpace);
            last = last < section.size() && section[last] == mark[1] ? last : NotFound;
        }
        return last == NotFound ? EndBySection(begin) : last + 1;
    }

    std::size_t DataFinder::EndBySection(std::size_t begin) const
    {
        std::size_t found = bytes.find(Word::End, begin);
        while (found != NotFound && !IsEndOfImageSection(bytes.substr(found + Word::End.size())))
        {
            found = bytes.find(Word::End, found + 1);
        }
        if (found == NotFound)
        {
            throw FormatError(begin, "data of the preview image does not end before the end of the file");
        }
        std::size_t end = found;
        // One line end belongs to the word's line.
        if (end > begin && bytes[end - 1] == '\n')
        {
            --end;
        }
        if (end > begin && bytes[end - 1] == '\r')
        {
            --end;
        }
        return end;
    }

    bool DataFinder::SectionEndsAfter(std::size_t end) const
    {
        const std::size_t next = SkipWhiteSpace(end, LongestWhiteSpace);
        return bytes.substr(next, Word::End.size()) == Word::End;
    }

    std::size_t DataFinder::SkipWhiteSpace(std::size_t begin, std::size_t most) const
    {
        const std::size_t limit = most < bytes.size() - begin ? begin + most : bytes.size();
        while (begin < limit && IsWhiteSpace(bytes[begin]))
        {
            ++begin;
        }
        return begin;
    }
}
