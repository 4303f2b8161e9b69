// Numbers as words of a command line and as text for a person. The locale has no say in either.
#pragma once

#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace Host
{
    /// The number that all of `text` is; none if it is not a number, or does not fit the type.
    template <class Number>
    std::optional<Number> NumberOf(std::string_view text)
    {
        Number number = 0;
        const char* const end = text.data() + text.size();
        const auto [stop, problem] = std::from_chars(text.data(), end, number);
        return problem == std::errc() && stop == end ? std::optional(number) : std::nullopt;
    }

    /// With six digits at most: "50.8", "299.999".
    std::string ShortText(double number);

    /// With all the digits that make the number the same again, and no exponent: "406.4".
    std::string FullText(double number);
}
