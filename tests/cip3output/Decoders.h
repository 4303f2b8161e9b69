// The inverse of each preview filter, as a PostScript interpreter has it: strict, and without regard to how the filters
// are written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace CIP3OutputTest
{
    /// Decodes tokens up to the end of data, which has to be the last byte if `ends`, and must be missing otherwise.
    inline std::string RunLengthDecoded(const std::string& data, bool ends)
    {
        std::string output;
        for (std::size_t p = 0; p < data.size();)
        {
            const auto length = static_cast<unsigned char>(data[p++]);
            if (length == 128)
            {
                if (!ends || p != data.size())
                {
                    throw std::runtime_error("end of data at " + std::to_string(p - 1));
                }
                return output;
            }
            if (length < 128)
            {
                if (p + length + 1U > data.size())
                {
                    throw std::runtime_error("literal run beyond the end");
                }
                output.append(data, p, length + 1U);
                p += length + 1U;
            }
            else
            {
                output.append(257U - length, data.at(p++));
            }
        }
        if (ends)
        {
            throw std::runtime_error("no end of data");
        }
        return output;
    }

    /// Decodes groups, and an incomplete last one; nothing but digits and 'z' may stand in `text`.
    inline std::string ASCII85Decoded(const std::string& text)
    {
        std::string output;
        std::string digits;
        const auto flush = [&output, &digits](std::size_t bytes)
        {
            std::uint64_t number = 0;
            for (const char digit : digits)
            {
                number = number * 85 + static_cast<std::uint64_t>(digit - '!');
            }
            if (number > 0xFFFFFFFFU)
            {
                throw std::runtime_error("group " + digits + " is beyond 32 bits");
            }
            for (std::size_t i = 0; i < bytes; ++i)
            {
                output.push_back(static_cast<char>(number >> (24 - 8 * i)));
            }
            digits.clear();
        };
        for (const char c : text)
        {
            if (c == 'z' && digits.empty())
            {
                output.append(4, '\0');
            }
            else if (c >= '!' && c <= 'u')
            {
                digits.push_back(c);
                if (digits.size() == 5)
                {
                    flush(4);
                }
            }
            else
            {
                throw std::runtime_error("no digit: " + std::string(1, c));
            }
        }
        if (!digits.empty())
        {
            const std::size_t bytes = digits.size() - 1;
            digits.append(5 - digits.size(), 'u');
            flush(bytes);
        }
        return output;
    }
}
