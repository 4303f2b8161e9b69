// PostScript's numbers: integers, reals and radix numbers, in the forms that programs write them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace Ppf
{
    /// The value of a number token ("12", "-.5", "1e+06", "16#FF"), or nothing for other text.
    std::optional<double> NumberOf(std::string_view text);

    /// The same, if the number is whole and exact: "4" and "4.0", but not "4.5".
    std::optional<std::int64_t> IntegerOf(std::string_view text);

    /// Value of a digit of either case in bases up to 36, or 36.
    unsigned DigitOf(char c);
}
