// Every length that the file states is held against what it lies in before anything is read, and only names are read.
#include "rasterfeed/InkNames.h"

#include "rasterfeed/Refusal.h"
#include "rasterfeed/SeparationForm.h"
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

        constexpr std::uint64_t LargestText = std::uint64_t{64} * 1024; // bytes of InkNames or PageName
        constexpr std::uint64_t LongestName = 1024;                     // units of a name in the image resources

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

        /// The text of a tag; empty if the tag is absent or not a text.
        std::string TextOf(const TiffFile& file, const NumberList& tag, const char* name)
        {
            if (tag.width != 1)
            {
                return "";
            }
            if (tag.count > LargestText)
            {
                throw Refusal(
                    std::string(name) + " of " + std::to_string(tag.count) + " bytes; up to 65536 are accepted");
            }
            return BytesAt(file.Source(), tag.position, tag.count);
        }

        /// The names of InkNames, each of which ends with a zero.
        Names InkNamesOf(const TiffFile& file)
        {
            const std::string text = TextOf(file, file.Facts().inkNames, "InkNames");
            Names names;
            for (std::size_t at = 0; at < text.size(); at = std::min(text.find('\0', at), text.size() - 1) + 1)
            {
                names.push_back(Utf8Of(std::string_view(text).substr(at)));
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
            while (rest.Bytes() >= LeastBlock)
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

        /// The channels that are inks, from 1.
        std::vector<std::uint32_t> InkChannels(const TiffFile& file, std::uint32_t samples)
        {
            const NumberList& extra = file.Facts().extraSamples;
            std::vector<std::uint32_t> channels;
            for (std::uint32_t sample = 0; sample < samples; ++sample)
            {
                const std::uint64_t fromEnd = samples - sample;
                const bool isExtra = extra.width != 0 && fromEnd <= extra.count;
                const std::uint64_t kind =
                    isExtra ? file.NumberIn(extra, extra.count - fromEnd) : EXTRASAMPLE_UNSPECIFIED;
                if (kind != EXTRASAMPLE_ASSOCALPHA && kind != EXTRASAMPLE_UNASSALPHA)
                {
                    channels.push_back(sample + 1);
                }
            }
            return channels;
        }

        /// What the samples are called, from the first on, as far as they have names.
        Names NamesOfSamples(const TiffFile& file, std::uint32_t samples, const std::vector<std::uint32_t>& inks)
        {
            constexpr std::size_t ProcessCount = std::size(ProcessInks);
            const bool mayBeProcess = file.Facts().inkSet.value_or(INKSET_CMYK) == INKSET_CMYK;
            if (samples < ProcessCount || !mayBeProcess || inks.size() < ProcessCount ||
                inks[ProcessCount - 1] != ProcessCount)
            {
                return {};
            }
            Names names(std::begin(ProcessInks), std::end(ProcessInks));
            const Names further = ResourceNamesOf(file, samples - ProcessCount);
            names.insert(names.end(), further.begin(), further.end());
            return names;
        }
    }

    std::string WayByHand(const RasterFeedInk& ink)
    {
        return "; name the inks by hand, this one by \"page\": " + std::to_string(ink.page) +
               " and \"channel\": " + std::to_string(ink.channel);
    }

    std::vector<RasterFeedInk> InksOfPage(const TiffFile& file)
    {
        const SeparationForm form = InspectForm(file, 1);
        const std::uint32_t samples = form.samples * form.planes;
        const std::vector<std::uint32_t> channels = InkChannels(file, samples);

        Names names = InkNamesOf(file); // of the inks, in their order
        if (names.empty() && samples == 1)
        {
            names = {Utf8Of(TextOf(file, file.Facts().pageName, "PageName"))};
        }
        else if (names.empty())
        {
            const Names all = NamesOfSamples(file, samples, channels);
            for (const std::uint32_t channel : channels)
            {
                names.push_back(channel <= all.size() ? all[channel - 1] : "");
            }
        }

        std::vector<RasterFeedInk> inks;
        for (const std::uint32_t channel : channels)
        {
            RasterFeedInk ink = {file.Page(), channel, ""};
            if (inks.size() == names.size() || names[inks.size()].empty())
            {
                throw Refusal("sample " + std::to_string(channel) + " has no name" + WayByHand(ink));
            }
            ink.name = names[inks.size()];
            inks.push_back(std::move(ink));
        }
        return inks;
    }
}
