// Directories as bytes: read, changed and written again.
#include "tests/support/TiffEditor.h"

#include <tiffio.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace TestSupport
{
    namespace
    {
        unsigned WidthOf(std::uint16_t type)
        {
            return static_cast<unsigned>(TIFFDataWidth(static_cast<TIFFDataType>(type)));
        }
    }

    TiffEditor::TiffEditor(std::string tiff)
        : bytes(std::move(tiff))
        , bigEndian(bytes[0] == 'M')
        , big(Number(bytes, 2, 2) == TIFF_VERSION_BIG)
        , word(big ? 8 : 4)
    {
        std::size_t at = Number(bytes, big ? 8 : 4, word);
        const std::uint64_t count = Number(bytes, at, big ? 8 : 2);
        at += big ? 8 : 2;
        for (std::uint64_t i = 0; i < count; ++i, at += 4 + 2 * word)
        {
            entries.push_back(
                {static_cast<std::uint16_t>(Number(bytes, at, 2)), static_cast<std::uint16_t>(Number(bytes, at + 2, 2)),
                 Number(bytes, at + 4, word), bytes.substr(at + 4 + word, word)});
        }
        next = Number(bytes, at, word);
    }

    void TiffEditor::Set(std::uint16_t tag, std::uint16_t type, const std::vector<std::uint64_t>& values)
    {
        // A rational is two values of half its width.
        const bool rational = type == TIFF_RATIONAL || type == TIFF_SRATIONAL;
        std::string encoded;
        for (const std::uint64_t value : values)
        {
            encoded += Encode(value, rational ? 4 : WidthOf(type));
        }
        const std::uint64_t count = rational ? values.size() / 2 : values.size();
        if (encoded.size() <= word)
        {
            encoded.resize(word);
        }
        else
        {
            bytes.resize((bytes.size() + 7) / 8 * 8);
            const std::uint64_t offset = bytes.size();
            bytes += encoded;
            encoded = Encode(offset, word);
        }
        Replace({tag, type, count, encoded});
    }

    void TiffEditor::SetRaw(std::uint16_t tag, std::uint16_t type, std::uint64_t count, std::uint64_t offset)
    {
        Replace({tag, type, count, Encode(offset, word)});
    }

    void TiffEditor::Remove(std::uint16_t tag)
    {
        entries.erase(
            std::remove_if(entries.begin(), entries.end(), [&](const Entry& entry) { return entry.tag == tag; }),
            entries.end());
    }

    std::uint64_t TiffEditor::Get(std::uint16_t tag, std::size_t index) const
    {
        const auto entry =
            std::find_if(entries.begin(), entries.end(), [&](const Entry& other) { return other.tag == tag; });
        if (entry == entries.end())
        {
            throw std::out_of_range("no such tag");
        }
        const unsigned width = WidthOf(entry->type);
        const bool isInField = entry->count * width <= word;
        const std::uint64_t begin = isInField ? 0 : Number(entry->field, 0, word);
        return Number(isInField ? entry->field : bytes, begin + index * width, width);
    }

    std::string TiffEditor::Bytes() const
    {
        std::string result = bytes;
        const std::uint64_t directory = result.size();
        result += Encode(entries.size(), big ? 8 : 2);
        for (const Entry& entry : entries)
        {
            result += Encode(entry.tag, 2) + Encode(entry.type, 2) + Encode(entry.count, word) + entry.field;
        }
        result += Encode(next, word);
        return result.replace(big ? 8 : 4, word, Encode(directory, word));
    }

    std::uint64_t TiffEditor::Number(const std::string& text, std::size_t position, unsigned width) const
    {
        std::uint64_t number = 0;
        for (unsigned i = 0; i < width; ++i)
        {
            number = number << 8 | static_cast<unsigned char>(text.at(position + (bigEndian ? i : width - 1 - i)));
        }
        return number;
    }

    std::string TiffEditor::Encode(std::uint64_t number, unsigned width) const
    {
        std::string encoded(width, '\0');
        for (unsigned i = 0; i < width; ++i)
        {
            encoded[bigEndian ? width - 1 - i : i] = static_cast<char>(number >> 8 * i & 0xff);
        }
        return encoded;
    }

    void TiffEditor::Replace(const Entry& entry)
    {
        Remove(entry.tag);
        const auto place =
            std::find_if(entries.begin(), entries.end(), [&](const Entry& other) { return other.tag > entry.tag; });
        entries.insert(place, entry);
    }
}
