#include "pdf2ppf/SpotFiles.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

namespace Pdf2Ppf
{
    namespace
    {
        constexpr std::size_t HexDigits = 2;
        constexpr int Hexadecimal = 16;

        /// `part` with each %XX as the byte that it stands for.
        std::string Decoded(const std::string& part)
        {
            std::string name;
            for (std::size_t i = 0; i < part.size(); ++i)
            {
                unsigned int byte = 0;
                const char* const digits = part.data() + i + 1;
                if (part[i] == '%' && part.size() - i > HexDigits &&
                    std::from_chars(digits, digits + HexDigits, byte, Hexadecimal).ptr == digits + HexDigits)
                {
                    name += static_cast<char>(byte);
                    i += HexDigits;
                }
                else
                {
                    name += part[i];
                }
            }
            return name;
        }
    }

    std::optional<std::vector<std::string>>
    PartsOfSpots(const std::vector<std::string>& names, std::vector<std::string> parts)
    {
        if (names.size() != parts.size())
        {
            return std::nullopt;
        }
        std::vector<std::string> ordered;
        for (std::size_t i = 0; i < names.size(); ++i)
        {
            // A colour that differs from a process ink only in its letters' case gets its number, from 0, after its name.
            const std::string numbered = names[i] + std::to_string(i);
            auto found = std::find_if(
                parts.begin(), parts.end(), [&](const std::string& part) { return Decoded(part) == names[i]; });
            if (found == parts.end())
            {
                found = std::find_if(
                    parts.begin(), parts.end(), [&](const std::string& part) { return Decoded(part) == numbered; });
            }
            if (found == parts.end())
            {
                return std::nullopt;
            }
            ordered.push_back(*found);
            parts.erase(found);
        }
        return ordered;
    }
}
