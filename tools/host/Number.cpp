#include "host/Number.h"

#include <array>

namespace Host
{
    std::string ShortText(double number)
    {
        constexpr int Digits = 6;
        std::array<char, 32> text{};
        const auto end =
            std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::general, Digits);
        return {text.data(), end.ptr};
    }

    std::string FullText(double number)
    {
        std::array<char, 512> text{}; // the largest number has 309 digits, the smallest 326
        const auto end = std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
        return {text.data(), end.ptr};
    }
}
