// std::to_chars takes no notice of a locale, which a host may have set to any.
#include "frontend/ValueToText.h"

#include <kxtypes.h>

#include <charconv>
#include <limits>

namespace Sheetvane
{
    namespace
    {
        constexpr int DigitsAfterPoint = 6; // what "%f" writes

        std::string FixedPoint(double number)
        {
            // Sign, the digits of the largest number, point, the digits after it.
            char text[1 + std::numeric_limits<double>::max_exponent10 + 1 + 1 + DigitsAfterPoint];
            const auto result =
                std::to_chars(text, text + sizeof text, number, std::chars_format::fixed, DigitsAfterPoint);
            return std::string(text, result.ptr);
        }

        /// The plain number of type `Number` in `value`, null if that is not of the class `typeName`.
        template <class Number>
        const Number* NumberIn(const KX_TObject& value, const char* typeName)
        {
            return static_cast<const Number*>(value.KX_Cast(typeName));
        }
    }

    std::string ValueToText(const KX_TObject& value) noexcept
    {
        try
        {
            if (const auto* const number = NumberIn<double>(value, "KX_TDouble"))
            {
                return FixedPoint(*number);
            }
            if (const auto* const number = NumberIn<float>(value, "KX_TFloat"))
            {
                return FixedPoint(static_cast<double>(*number));
            }
            if (const auto* const number = NumberIn<std::int32_t>(value, "KX_TInt32"))
            {
                return std::to_string(*number);
            }
            if (const auto* const number = NumberIn<std::uint32_t>(value, "KX_TUInt32"))
            {
                return std::to_string(*number);
            }
        }
        catch (...)
        {
            // A value without a text does not fail the sheet's parameters.
        }
        return {};
    }
}
