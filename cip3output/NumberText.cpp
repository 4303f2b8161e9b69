// Conversion of numbers to text.
#include "cip3output/NumberText.h"

#include <charconv>

namespace RasterOutput
{
    namespace
    {
        constexpr int SignificantDigits = 6;
    }

    NumberText NumberText::Decimal(std::int64_t number) noexcept
    {
        NumberText text;
        char* const begin = text.characters.data();
        text.length =
            static_cast<std::size_t>(std::to_chars(begin, begin + text.characters.size(), number).ptr - begin);
        return text;
    }

    NumberText NumberText::General(double number) noexcept
    {
        NumberText text;
        char* const begin = text.characters.data();
        const auto result =
            std::to_chars(begin, begin + text.characters.size(), number, std::chars_format::general, SignificantDigits);
        text.length = static_cast<std::size_t>(result.ptr - begin);
        return text;
    }
}
