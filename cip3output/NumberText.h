// Numbers as the document has them. They never depend on a locale that the host has set.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace RasterOutput
{
    /// The text of one number, for as long as this object lives.
    class NumberText
    {
    public:
        /// Plain decimal, "-" when negative.
        static NumberText Decimal(std::int64_t number) noexcept;

        /// General format with at most 6 significant digits: fixed notation for decimal exponents from -4 to 5, else
        /// scientific with a sign and at least two digits in the exponent; no trailing zeros and no trailing point.
        static NumberText General(double number) noexcept;

        operator std::string_view() const noexcept { return {characters.data(), length}; }

    private:
        NumberText() = default;

        /// Holds any 64-bit number with its sign, and 6 digits with sign, point and exponent.
        std::array<char, 24> characters{};
        std::size_t length = 0;
    };
}
