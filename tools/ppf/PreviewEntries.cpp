#include "ppf/PreviewEntries.h"

#include "ppf/Keywords.h"
#include "ppf/Number.h"
#include "ppf/Scanner.h"

#include <array>
#include <limits>
#include <string>
#include <utility>

namespace Ppf
{
    namespace
    {
        /// Reads the values of one preview's entries and knows where to point when one is wrong.
        class ValueReader
        {
        public:
            ValueReader(std::string_view theBytes, std::uint64_t theImageOffset)
                : bytes(theBytes)
                , imageOffset(theImageOffset)
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
                if (tokens.size() != 1 || tokens[0].kind != TokenKind::LiteralName)
                {
                    Fail(key, value, "a name");
                }
                // No filter has a name longer than this.
                constexpr std::size_t LongestName = 100;
                return tokens[0].text.substr(1, LongestName);
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
                bool isArray = tokens.size() == Count + 2 && tokens.front().kind == TokenKind::Open &&
                               tokens.front().text != "<<" && tokens.back().kind == TokenKind::Close;
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
                    static_cast<std::uint64_t>(value.data() - bytes.data()),
                    "value of /" + std::string(key) + " is not " + wanted);
            }

        private:
            std::string_view Required(std::string_view key, std::string_view value) const
            {
                if (value.data() == nullptr)
                {
                    throw FormatError(imageOffset, "preview image has no /" + std::string(key));
                }
                return value;
            }

            std::string_view bytes;
            std::uint64_t imageOffset;
        };
    }

    bool PreviewEntries::Take(const Entry& entry)
    {
        const std::pair<std::string_view, std::string_view PreviewEntries::*> fields[] = {
            {Key::Width, &PreviewEntries::width},
            {Key::Height, &PreviewEntries::height},
            {Key::BitsPerComponent, &PreviewEntries::bitsPerComponent},
            {Key::Components, &PreviewEntries::components},
            {Key::Matrix, &PreviewEntries::matrix},
            {Key::Resolution, &PreviewEntries::resolution},
            {Key::Compression, &PreviewEntries::compression},
            {Key::Encoding, &PreviewEntries::encoding},
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
        preview.width = values.Positive(Key::Width, width);
        preview.height = values.Positive(Key::Height, height);

        const std::uint64_t bits = values.Positive(Key::BitsPerComponent, bitsPerComponent);
        if (bits != 1 && bits != 8)
        {
            values.Fail(Key::BitsPerComponent, bitsPerComponent, "1 or 8");
        }
        preview.bitsPerComponent = static_cast<unsigned>(bits);
        const std::uint64_t inksPerPixel = values.Positive(Key::Components, components);
        if (inksPerPixel != 1 && inksPerPixel != 4)
        {
            values.Fail(Key::Components, components, "1 or 4");
        }
        preview.components = static_cast<unsigned>(inksPerPixel);

        preview.matrix = values.Array<6>(Key::Matrix, matrix);
        if (preview.matrix && !IsOrthogonal(*preview.matrix))
        {
            values.Fail(Key::Matrix, matrix, "one of the eight orientations");
        }
        if (const auto theResolution = values.Array<2>(Key::Resolution, resolution))
        {
            const auto [x, y] = *theResolution;
            if (!(x > 0 && y > 0))
            {
                values.Fail(Key::Resolution, resolution, "two numbers above 0");
            }
            preview.resolution = {x, y};
        }

        preview.compressionName = values.Name(Key::Compression, compression);
        preview.compression = preview.compressionName == Filter::None        ? Compression::None
                              : preview.compressionName == Filter::RunLength ? Compression::RunLength
                              : preview.compressionName == Filter::Dct       ? Compression::Dct
                                                                             : Compression::Unknown;
        preview.encodingName = values.Name(Key::Encoding, encoding);
        preview.encoding = preview.encodingName == Filter::AsciiHex  ? Encoding::AsciiHex
                           : preview.encodingName == Filter::Ascii85 ? Encoding::Ascii85
                                                                     : Encoding::Binary;
        if (preview.encoding == Encoding::Binary &&
            (preview.encodingName != Filter::Binary || preview.compression == Compression::Unknown))
        {
            values.Fail(
                preview.encodingName == Filter::Binary ? Key::Compression : Key::Encoding,
                preview.encodingName == Filter::Binary ? compression : encoding, "one that this reader knows");
        }
        return preview;
    }
}
