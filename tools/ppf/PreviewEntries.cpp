// Texts kept as they come, and read as numbers and names only once an image needs them.
#include "ppf/PreviewEntries.h"

#include <array>
#include <limits>
#include <string>
#include <utility>

#include "ppf/Keywords.h"
#include "ppf/Number.h"
#include "ppf/Scanner.h"

namespace ppf
{
    namespace
    {
        /// Reads the values of one preview's entries and knows where to point when one is wrong.
        class ValueReader
        {
        public:
            ValueReader(std::string_view bytes, std::uint64_t imageOffset)
                : m_bytes(bytes)
                , m_imageOffset(imageOffset)
            {
            }

            std::uint64_t Positive(std::string_view key, std::string_view value) const
            {
                const std::optional<std::int64_t> number = IntegerOf(Required(key, value));
                if (!number || *number < 1 || *number > std::numeric_limits<std::int32_t>::max())
                {
                    Fail(key, value, "a whole number from 1 to 2147483647");
                }
                return static_cast<std::uint64_t>(*number);
            }

            std::string_view Name(std::string_view key, std::string_view value) const
            {
                const std::vector<Token> tokens = TokensOf(Required(key, value), 1);
                if (tokens.size() != 1 || tokens[0].kind != TokenKind::literalName)
                {
                    Fail(key, value, "a name");
                }
                // No filter has a name longer than this.
                constexpr std::size_t longestName = 100;
                return tokens[0].text.substr(1, longestName);
            }

            /// An array of as many numbers, or nothing if the entry is not there at all.
            template <std::size_t Count>
            std::optional<std::array<double, Count>> Array(std::string_view key, std::string_view value) const
            {
                if (value.data() == nullptr)
                {
                    return std::nullopt;
                }
                // The numbers stand between brackets.
                const std::vector<Token> tokens = TokensOf(value, Count + 2);
                bool isArray = tokens.size() == Count + 2 && tokens.front().kind == TokenKind::open &&
                               tokens.front().text != "<<" && tokens.back().kind == TokenKind::close;
                std::array<double, Count> numbers = {};
                for (std::size_t i = 0; isArray && i < Count; ++i)
                {
                    const std::optional<double> number = NumberOf(tokens[i + 1].text);
                    isArray = number.has_value();
                    numbers[i] = number.value_or(0);
                }
                if (!isArray)
                {
                    Fail(key, value, "an array of " + std::to_string(Count) + " numbers");
                }
                return numbers;
            }

            [[noreturn]] void Fail(std::string_view key, std::string_view value, const std::string& wanted) const
            {
                throw FormatError(
                    static_cast<std::uint64_t>(value.data() - m_bytes.data()),
                    "value of /" + std::string(key) + " is not " + wanted);
            }

        private:
            std::string_view Required(std::string_view key, std::string_view value) const
            {
                if (value.data() == nullptr)
                {
                    throw FormatError(m_imageOffset, "preview image has no /" + std::string(key));
                }
                return value;
            }

            std::string_view m_bytes;
            std::uint64_t m_imageOffset;
        };
    }

    bool PreviewEntries::Take(const Entry& entry)
    {
        const std::pair<std::string_view, std::string_view PreviewEntries::*> fields[] = {
            {key::width, &PreviewEntries::m_width},
            {key::height, &PreviewEntries::m_height},
            {key::bitsPerComponent, &PreviewEntries::m_bitsPerComponent},
            {key::components, &PreviewEntries::m_components},
            {key::matrix, &PreviewEntries::m_matrix},
            {key::resolution, &PreviewEntries::m_resolution},
            {key::compression, &PreviewEntries::m_compression},
            {key::encoding, &PreviewEntries::m_encoding},
        };
        for (const auto& [name, field] : fields)
        {
            if (entry.key == name)
            {
                this->*field = entry.value;
                return true;
            }
        }
        return false;
    }

    Preview PreviewEntries::MakePreview(std::string_view bytes, std::uint64_t imageOffset) const
    {
        const ValueReader values(bytes, imageOffset);
        Preview preview;
        preview.offset = imageOffset;
        preview.width = values.Positive(key::width, m_width);
        preview.height = values.Positive(key::height, m_height);

        const std::uint64_t bits = values.Positive(key::bitsPerComponent, m_bitsPerComponent);
        if (bits != 1 && bits != 8)
        {
            values.Fail(key::bitsPerComponent, m_bitsPerComponent, "1 or 8");
        }
        preview.bitsPerComponent = static_cast<unsigned>(bits);
        const std::uint64_t components = values.Positive(key::components, m_components);
        if (components != 1 && components != 4)
        {
            values.Fail(key::components, m_components, "1 or 4");
        }
        preview.components = static_cast<unsigned>(components);

        preview.matrix = values.Array<6>(key::matrix, m_matrix);
        if (preview.matrix && !IsOrthogonal(*preview.matrix))
        {
            values.Fail(key::matrix, m_matrix, "one of the eight orientations");
        }
        if (const auto resolution = values.Array<2>(key::resolution, m_resolution))
        {
            const auto [x, y] = *resolution;
            if (!(x > 0 && y > 0))
            {
                values.Fail(key::resolution, m_resolution, "two numbers above 0");
            }
            preview.resolution = {x, y};
        }

        preview.compressionName = values.Name(key::compression, m_compression);
        preview.compression = preview.compressionName == filter::none        ? Compression::none
                              : preview.compressionName == filter::runLength ? Compression::runLength
                              : preview.compressionName == filter::dct       ? Compression::dct
                                                                             : Compression::unknown;
        preview.encodingName = values.Name(key::encoding, m_encoding);
        preview.encoding = preview.encodingName == filter::asciiHex  ? Encoding::asciiHex
                           : preview.encodingName == filter::ascii85 ? Encoding::ascii85
                                                                     : Encoding::binary;
        if (preview.encoding == Encoding::binary &&
            (preview.encodingName != filter::binary || preview.compression == Compression::unknown))
        {
            values.Fail(
                preview.encodingName == filter::binary ? key::compression : key::encoding,
                preview.encodingName == filter::binary ? m_compression : m_encoding, "one that this reader knows");
        }
        return preview;
    }
}
