// One search per encoding. Text is searched for its mark, run-length data walked by tokens, JPEG data by its markers.
#include "ppf/DataFinder.h"

#include <algorithm>
#include <string>

#include "ppf/Keywords.h"
#include "ppf/RunLengthLanes.h"
#include "ppf/RunLengthToken.h"
#include "ppf/Scanner.h"

namespace ppf
{
    namespace
    {
        constexpr std::size_t notFound = std::string_view::npos;

        /// Line ends and a blank that may stand between the word and binary data.
        constexpr std::size_t longestGap = 3;

        /// How well a start fits that leads to data of the preview's size with one line end behind it.
        constexpr int bestFit = 3;

        /// How often the walks through run-length data may pass over as many bytes as the file has before the first
        /// start has to do. Only a file made for it brings walks that begin at the wrong byte past their own data.
        constexpr std::uint64_t mostWalks = 16;

        /// White space that is looked through behind data, in bytes. A bound, so that previews which all claim to end
        /// in the same wide blank cost no more than they have bytes.
        constexpr std::size_t longestWhiteSpace = 4096;

        /// A letter of CIP3PreviewImage that neither ASCIIHex nor ASCII85 data can hold: where it stands, another
        /// section has begun.
        constexpr char letterOfWords = 'v';

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

        /// What closes the section that a preview image stands in, behind "CIP3End".
        bool IsEndOfImageSection(std::string_view rest)
        {
            return rest.substr(0, word::separation.size()) == word::separation ||
                   rest.substr(0, word::previewImage.size()) == word::previewImage;
        }

        namespace jpeg
        {
            constexpr unsigned char mark = 0xFF;
            constexpr unsigned char stuffed = 0x00;
            constexpr unsigned char temporary = 0x01;
            constexpr unsigned char firstRestart = 0xD0;
            constexpr unsigned char startOfImage = 0xD8;
            constexpr unsigned char endOfImage = 0xD9;
            constexpr unsigned char startOfScan = 0xDA;
        }
    }

    std::string_view DataFinder::Find(std::uint64_t begin, const Preview& preview)
    {
        auto at = static_cast<std::size_t>(begin);
        if (preview.encoding != Encoding::binary)
        {
            at = SkipWhiteSpace(at, m_bytes.size());
            const bool isHex = preview.encoding == Encoding::asciiHex;
            const std::size_t end = TextEnd(at, isHex ? filter::asciiHexEnd : filter::ascii85End);
            return m_bytes.substr(at, end - at);
        }
        if (at < m_bytes.size() && !IsWhiteSpace(m_bytes[at]))
        {
            throw FormatError(begin, "no white space stands between CIP3PreviewImage and its data");
        }
        // The one white space character behind the word belongs to it. Some writers put a whole line end there, which
        // can be data as well: 10 is a length byte, and 0 as a pixel is white space. What is told apart by is the size
        // of the data, then that one line end stands behind it. The start right behind one character is the first.
        const std::size_t first = std::min(at + 1, m_bytes.size());
        const std::size_t gapEnd = std::min(first + longestGap, m_bytes.size());
        std::string_view found;
        int foundFit = -1;
        for (std::size_t start = first;; ++start)
        {
            const DataEnd end = BinaryEnd(start, preview);
            if (end.at != notFound && SectionEndsAfter(end.at))
            {
                const std::string_view behind =
                    m_bytes.substr(end.at, SkipWhiteSpace(end.at, longestWhiteSpace) - end.at);
                const bool isUsual =
                    IsLineEnd(behind) && (start == first || IsUsualGap(m_bytes.substr(at, start - at)));
                const int fit = (end.hasSize ? 2 : 0) + (isUsual ? 1 : 0);
                if (fit > foundFit)
                {
                    found = m_bytes.substr(start, end.at - start);
                    foundFit = fit;
                }
            }
            const bool mayGoOn =
                start != gapEnd && (m_bytes[start] == '\n' || m_bytes[start] == '\r' || m_bytes[start] == ' ');
            if (foundFit == bestFit || !mayGoOn || m_walked / mostWalks > m_bytes.size())
            {
                break;
            }
        }
        if (found.data() != nullptr)
        {
            return found;
        }
        if (preview.compression != Compression::none)
        {
            throw FormatError(
                first, std::string(preview.compressionName) + " data does not lead to the end of its section");
        }
        return m_bytes.substr(first, EndBySection(first) - first);
    }

    DataFinder::DataEnd DataFinder::BinaryEnd(std::size_t begin, const Preview& preview)
    {
        switch (preview.compression)
        {
        case Compression::runLength:
        {
            const DataEnd end = RunLengthEnd(begin, preview);
            m_walked += std::min(end.at, m_bytes.size()) - begin;
            return end;
        }
        case Compression::dct:
            return {DctEnd(begin), true};
        default:
        {
            const bool fits = preview.StoredBytes() <= m_bytes.size() - begin;
            return {fits ? begin + static_cast<std::size_t>(preview.StoredBytes()) : notFound, true};
        }
        }
    }

    DataFinder::DataEnd DataFinder::RunLengthEnd(std::size_t begin, const Preview& preview) const
    {
        const std::uint64_t size = preview.StoredBytes();
        const RunLengthPlace place = PassTokens(m_bytes, begin, size);
        std::uint64_t passed = place.passed;
        for (std::size_t i = place.at; i < m_bytes.size();)
        {
            const auto length = static_cast<unsigned char>(m_bytes[i]);
            if (length == filter::runLengthEnd)
            {
                return {i + 1, passed == size};
            }
            const RunLengthToken token(length);
            const bool wasIncomplete = passed < size;
            passed += token.Run();
            i += 1 + token.DataBytes();
            // A file may leave the end mark out where the size is complete. Looked at once: data that goes on behind
            // its size needs the mark.
            if (wasIncomplete && passed >= size && i <= m_bytes.size() &&
                (i == m_bytes.size() || static_cast<unsigned char>(m_bytes[i]) != filter::runLengthEnd) &&
                SectionEndsAfter(i))
            {
                return {i, passed == size};
            }
        }
        return {notFound, false};
    }

    std::size_t DataFinder::DctEnd(std::size_t begin) const
    {
        const auto at = [&](std::size_t i)
        { return i < m_bytes.size() ? static_cast<unsigned char>(m_bytes[i]) : jpeg::stuffed; };
        if (at(begin) != jpeg::mark || at(begin + 1) != jpeg::startOfImage)
        {
            return notFound;
        }
        bool inScan = false;
        for (std::size_t i = begin + 2; i < m_bytes.size();)
        {
            i = inScan ? m_bytes.find(static_cast<char>(jpeg::mark), i) : i;
            if (i == notFound || at(i) != jpeg::mark)
            {
                return notFound;
            }
            const unsigned char code = at(i + 1);
            const bool isData = code == jpeg::stuffed && inScan;
            const bool isRestart = code >= jpeg::firstRestart && code < jpeg::startOfImage;
            if (code == jpeg::endOfImage)
            {
                return std::min(i + 2, m_bytes.size());
            }
            if (code == jpeg::mark)
            {
                i += 1;
            }
            else if (isData || isRestart || code == jpeg::temporary)
            {
                i += 2;
            }
            else
            {
                i += 2 + 256u * at(i + 2) + at(i + 3);
                inScan = code == jpeg::startOfScan;
            }
        }
        return notFound;
    }

    std::size_t DataFinder::TextEnd(std::size_t begin, std::string_view mark) const
    {
        // A mark that is missing here must not be found in the next section.
        const std::string_view section = m_bytes.substr(0, m_bytes.find(letterOfWords, begin));
        // "<~" may open ASCII85 data; its "~" is not that of the end mark.
        const bool isOpened = section.substr(begin, 2) == filter::ascii85Begin && mark == filter::ascii85End;
        std::size_t last = section.find(mark[0], begin + (isOpened ? filter::ascii85Begin.size() : 0));
        if (last != notFound && mark.size() > 1)
        {
            // White space may stand between the two characters of a mark.
            last = SkipWhiteSpace(last + 1, longestWhiteSpace);
            last = last < section.size() && section[last] == mark[1] ? last : notFound;
        }
        return last == notFound ? EndBySection(begin) : last + 1;
    }

    std::size_t DataFinder::EndBySection(std::size_t begin) const
    {
        std::size_t found = m_bytes.find(word::end, begin);
        while (found != notFound && !IsEndOfImageSection(m_bytes.substr(found + word::end.size())))
        {
            found = m_bytes.find(word::end, found + 1);
        }
        if (found == notFound)
        {
            throw FormatError(begin, "data of the preview image does not end before the end of the file");
        }
        std::size_t end = found;
        // One line end belongs to the word's line.
        if (end > begin && m_bytes[end - 1] == '\n')
        {
            --end;
        }
        if (end > begin && m_bytes[end - 1] == '\r')
        {
            --end;
        }
        return end;
    }

    bool DataFinder::SectionEndsAfter(std::size_t end) const
    {
        const std::size_t next = SkipWhiteSpace(end, longestWhiteSpace);
        return m_bytes.substr(next, word::end.size()) == word::end;
    }

    std::size_t DataFinder::SkipWhiteSpace(std::size_t begin, std::size_t most) const
    {
        const std::size_t limit = most < m_bytes.size() - begin ? begin + most : m_bytes.size();
        while (begin < limit && IsWhiteSpace(m_bytes[begin]))
        {
            ++begin;
        }
        return begin;
    }
}
