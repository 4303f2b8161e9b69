// Every length that the file states is held against what it lies in before anything is read, and only names are read.
#include "rasterfeed/InkNames.h"

#include "rasterfeed/Refusal.h"
#include "rasterfeed/SourceFile.h"
#include "rasterfeed/TiffFile.h"

#include <boost/locale/utf.hpp>

#include <algorithm>
#include <iterator>
#include <string_view>

namespace RasterFeed
{
    namespace
    {
        using Names = std::vector<std::string>;

        // A name of more bytes, or units of UTF-16, is damage, or an attack on memory.
        constexpr std::uint64_t LongestName = 1024;
        constexpr std::uint64_t LongestInkNames = 32 * LongestName;

        // Blocks of the image resources that are looked at. Real files have some dozens.
        constexpr int MostBlocks = 1024;

        constexpr const char* ProcessInks[] = {"Cyan", "Magenta", "Yellow", "Black"};

        // A block of the image resources: signature, identifier of 2 bytes, a name as a Pascal string, padded to an even
        // length, the length of the data in 4 bytes, and the data, padded likewise. Numbers have their highest byte first.
        constexpr std::string_view ResourceSignature = "8BIM";
        constexpr std::uint64_t IdentifierBytes = 2;
        constexpr std::uint64_t LengthBytes = 4;
        constexpr std::uint64_t LeastBlock = 12;
        constexpr std::uint64_t UnicodeNames = 1045; // each a length of 4 bytes and as many units of UTF-16
        constexpr std::uint64_t PascalNames = 1006;

        /// A stretch of the file.
        struct Stretch
        {
            std::uint64_t begin; ///< bytes from the start of the file
            std::uint64_t end;

            std::uint64_t Bytes() const { return end - begin; }
        };

        bool IsCharacter(boost::locale::utf::code_point decoded)
        {
            return decoded != boost::locale::utf::illegal && decoded != boost::locale::utf::incomplete;
        }

        /// `text` as UTF-8, which it is already, or else ISO 8859-1; up to its first zero.
        std::string Utf8Of(std::string_view text)
        {
            using Utf8 = boost::locale::utf::utf_traits<char>;
            text = text.substr(0, text.find('\0'));
            bool isUtf8 = true;
            for (auto at = text.begin(); isUtf8 && at != text.end();)
            {
                isUtf8 = IsCharacter(Utf8::decode(at, text.end()));
            }
            std::string converted;
            for (auto at = text.begin(); !isUtf8 && at != text.end(); ++at)
            {
                Utf8::encode(static_cast<unsigned char>(*at), std::back_inserter(converted));
            }
            return isUtf8 ? std::string(text) : converted;
        }

        /// The same of UTF-16; empty if that is damaged.
        std::string Utf8Of(std::u16string_view text)
        {
            text = text.substr(0, text.find(u'\0'));
            std::string converted;
            for (auto at = text.begin(); at != text.end();)
            {
                const auto decoded = boost::locale::utf::utf_traits<char16_t>::decode(at, text.end());
                if (!IsCharacter(decoded))
                {
                    return "";
                }
                boost::locale::utf::utf_traits<char>::encode(decoded, std::back_inserter(converted));
            }
            return converted;
        }

        std::string BytesAt(SourceFile& file, std::uint64_t position, std::uint64_t count)
        {
            std::string bytes(static_cast<std::size_t>(count), '\0');
            if (file.Read(position, bytes.data(), bytes.size()) != bytes.size())
            {
                throw Refusal("names that reach beyond the end of the file; a whole TIFF is needed");
            }
            return bytes;
        }

        /// The unsigned number of up to 4 bytes at `position`.
        std::uint64_t NumberAt(SourceFile& file, std::uint64_t position, unsigned width)
        {
            std::uint64_t number = 0;
            for (const char byte : BytesAt(file, position, width))
            {
                number = number << 8 | static_cast<unsigned char>(byte);
            }
            return number;
        }

        /// The bytes of a tag; empty if the tag is absent or not a text.
        std::string BytesOf(const TiffFile& file, const NumberList& tag, const char* name, std::uint64_t most)
        {
            if (tag.width != 1)
            {
                return "";
            }
            if (tag.count > most)
            {
                throw Refusal(
                    std::string(name) + " of " + std::to_string(tag.count) + " bytes; up to " + std::to_string(most) +
                    " are accepted");
            }
            return BytesAt(file.Source(), tag.position, tag.count);
        }

        /// The names of InkNames, each of which ends with a zero.
        Names InkNamesOf(const TiffFile& file)
        {
            const std::string bytes = BytesOf(file, file.Facts().inkNames, "InkNames", LongestInkNames);
            Names names;
            for (std::string_view rest = bytes; !rest.empty();
                 rest.remove_prefix(std::min(rest.find('\0'), rest.size() - 1) + 1))
            {
                names.push_back(Utf8Of(rest));
            }
            return names;
        }

        Names UnicodeNamesIn(SourceFile& file, Stretch data, std::size_t most)
        {
            Names names;
            while (names.size() < most && data.Bytes() >= LengthBytes)
            {
                const std::uint64_t units = NumberAt(file, data.begin, LengthBytes);
                data.begin += LengthBytes;
                if (units > LongestName || units * 2 > data.Bytes())
                {
                    break;
                }
                const std::string bytes = BytesAt(file, data.begin, units * 2);
                std::u16string name;
                for (std::size_t i = 0; i < bytes.size(); i += 2)
                {
                    name += static_cast<char16_t>(
                        static_cast<unsigned char>(bytes[i]) << 8 | static_cast<unsigned char>(bytes[i + 1]));
                }
                names.push_back(Utf8Of(name));
                data.begin += units * 2;
            }
            return names;
        }

        Names PascalNamesIn(SourceFile& file, Stretch data, std::size_t most)
        {
            Names names;
            while (names.size() < most && data.Bytes() >= 1)
            {
                const std::uint64_t bytes = NumberAt(file, data.begin, 1);
                ++data.begin;
                if (bytes > data.Bytes())
                {
                    break;
                }
                names.push_back(Utf8Of(BytesAt(file, data.begin, bytes)));
                data.begin += bytes;
            }
            return names;
        }

        /// Up to `most` names of the samples after the process inks, as the image resources have them.
        Names ResourceNamesOf(const TiffFile& file, std::size_t most)
        {
            SourceFile& source = file.Source();
            const NumberList& tag = file.Facts().imageResources;
            if (tag.count == 0 || tag.width == 0 || tag.count > LargestTag / tag.width || tag.position > source.Size())
            {
                return {};
            }
            Stretch rest = {tag.position, std::min<std::uint64_t>(tag.position + tag.count * tag.width, source.Size())};
            Names pascalNames;
            for (int block = 0; block < MostBlocks && rest.Bytes() >= LeastBlock; ++block)
            {
                const bool isOurs = BytesAt(source, rest.begin, ResourceSignature.size()) == ResourceSignature;
                rest.begin += ResourceSignature.size();
                const std::uint64_t identifier = NumberAt(source, rest.begin, IdentifierBytes);
                rest.begin += IdentifierBytes;
                const std::uint64_t nameBytes = NumberAt(source, rest.begin, 1) / 2 * 2 + 2; // its length included
                if (nameBytes + LengthBytes > rest.Bytes())
                {
                    break;
                }
                rest.begin += nameBytes;
                const std::uint64_t bytes = NumberAt(source, rest.begin, LengthBytes);
                rest.begin += LengthBytes;
                if (bytes > rest.Bytes())
                {
                    break;
                }
                const Stretch data = {rest.begin, rest.begin + bytes};
                if (isOurs && identifier == UnicodeNames)
                {
                    Names names = UnicodeNamesIn(source, data, most);
                    if (!names.empty())
                    {
                        return names;
                    }
                }
                else if (isOurs && identifier == PascalNames && pascalNames.empty())
                {
                    pascalNames = PascalNamesIn(source, data, most);
                }
                rest.begin = std::min(data.end + bytes % 2, rest.end);
            }
            return pascalNames;
        }

        /// What the samples are called where InkNames does not say it, from the first on, as far as they have names.
        Names NamesOfSamples(const TiffFile& file, std::uint32_t samples, const std::vector<std::uint32_t>& inks)
        {
            constexpr std::size_t ProcessCount = std::size(ProcessInks);
            if (samples == 1)
            {
                return {Utf8Of(BytesOf(file, file.Facts().pageName, "PageName", LongestName))};
            }
            const bool areColours = inks.size() >= ProcessCount && inks[ProcessCount - 1] == ProcessCount;
            if (!areColours || file.Facts().inkSet.value_or(INKSET_CMYK) != INKSET_CMYK)
            {
                return {};
            }
            Names names(std::begin(ProcessInks), std::end(ProcessInks));
            const Names further = ResourceNamesOf(file, samples - ProcessCount);
            names.insert(names.end(), further.begin(), further.end());
            return names;
        }
    }

    std::vector<std::string>
    NamesOfInks(const TiffFile& file, std::uint32_t samples, const std::vector<std::uint32_t>& channels)
    {
        Names names = InkNamesOf(file);
        if (names.empty())
        {
            const Names all = NamesOfSamples(file, samples, channels);
            for (const std::uint32_t channel : channels)
            {
                names.push_back(channel <= all.size() ? all[channel - 1] : "");
            }
        }
        names.resize(channels.size());
        return names;
    }
}
