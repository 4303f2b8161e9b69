#include "ppf/Number.h"

#include <charconv>
#include <cmath>

namespace Ppf
{
    namespace
    {
        std::optional<double> RadixNumberOf(std::string_view text)
        {
            const std::size_t mark = text.find('#');
            if (mark == std::string_view::npos || mark + 1 == text.size())
            {
                return std::nullopt;
            }
            unsigned base = 0;
            const auto parsed = std::from_chars(text.data(), text.data() + mark, base);
            if (parsed.ec != std::errc() || parsed.ptr != text.data() + mark || base < 2 || base > 36)
            {
                return std::nullopt;
            }
            std::uint64_t value = 0;
            const char* end = text.data() + text.size();
            const auto digits = std::from_chars(text.data() + mark + 1, end, value, static_cast<int>(base));
            if (digits.ec != std::errc() || digits.ptr != end)
            {
                return std::nullopt;
            }
            return static_cast<double>(value);
        }
    }

    std::optional<double> NumberOf(std::string_view text)
    {
        // The longest form that is worth reading: anything longer is a word.
        constexpr std::size_t LongestNumber = 512;
        if (text.empty() || text.size() > LongestNumber)
        {
            return std::nullopt;
        }
        const bool isSigned = text[0] == '+' || text[0] == '-';
        const std::string_view unsignedText = text.substr(isSigned ? 1 : 0);
        // Rules out the words that from_chars would read: inf and nan.
        if (unsignedText.empty() || (unsignedText[0] != '.' && DigitOf(unsignedText[0]) >= 10))
        {
            return std::nullopt;
        }
        double value = 0;
        const char* end = unsignedText.data() + unsignedText.size();
        const auto parsed = std::from_chars(unsignedText.data(), end, value);
        if (parsed.ec == std::errc() && parsed.ptr == end)
        {
            return text[0] == '-' ? -value : value;
        }
        return isSigned ? std::nullopt : RadixNumberOf(text);
    }

    std::optional<std::int64_t> IntegerOf(std::string_view text)
    {
        // Up to here every whole number has a double of its own.
        constexpr double Greatest = 9007199254740992.0;
        const std::optional<double> value = NumberOf(text);
        if (!value || *value != std::floor(*value) || std::abs(*value) > Greatest)
        {
            return std::nullopt;
        }
        return static_cast<std::int64_t>(*value);
    }

    unsigned DigitOf(char c)
    {
        if (c >= '0' && c <= '9')
        {
            return static_cast<unsigned>(c - '0');
        }
        if (c >= 'a' && c <= 'z')
        {
            return static_cast<unsigned>(c - 'a') + 10;
        }
        if (c >= 'A' && c <= 'Z')
        {
            return static_cast<unsigned>(c - 'A') + 10;
        }
        return 36;
    }
}
