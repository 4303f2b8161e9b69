#include "ppfwatch/NaturalOrder.h"

#include <algorithm>
#include <cstddef>

namespace PpfWatch
{
    namespace
    {
        bool IsDigit(char c)
        {
            return c >= '0' && c <= '9';
        }

        /// Takes the run of digits that `text` begins with, and gives it without leading zeros.
        std::string_view TakeNumber(std::string_view& text)
        {
            const auto end =
                static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), &IsDigit) - text.begin());
            std::string_view digits = text.substr(0, end);
            text.remove_prefix(end);
            digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
            return digits;
        }
    }

    bool IsNaturallyBefore(std::string_view first, std::string_view second)
    {
        std::string_view a = first;
        std::string_view b = second;
        while (!a.empty() && !b.empty())
        {
            if (IsDigit(a.front()) && IsDigit(b.front()))
            {
                const std::string_view x = TakeNumber(a);
                const std::string_view y = TakeNumber(b);
                if (x != y)
                {
                    return x.size() != y.size() ? x.size() < y.size() : x < y;
                }
                continue;
            }
            if (a.front() != b.front())
            {
                return static_cast<unsigned char>(a.front()) < static_cast<unsigned char>(b.front());
            }
            a.remove_prefix(1);
            b.remove_prefix(1);
        }
        return a.empty() != b.empty() ? a.empty() : first < second;
    }
}
