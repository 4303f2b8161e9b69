// The preview filters as plain loops, straight from the format: the truth that the kernels are held against, in the
// tests and before every measurement.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace PlainLoops
{
    inline std::string Invert(const std::string& input)
    {
        std::string output;
        for (const char c : input)
        {
            output.push_back(static_cast<char>(255 - static_cast<unsigned char>(c)));
        }
        return output;
    }

    inline std::string RunLength(const std::string& input)
    {
        std::string output;
        std::size_t p = 0;
        while (p < input.size())
        {
            std::size_t end = p + 1;
            const bool repeats = end < input.size() && input[end] == input[p];
            if (repeats)
            {
                while (end < input.size() && input[end] == input[p])
                {
                    ++end;
                }
            }
            else
            {
                while (end < input.size() && !(end + 1 < input.size() && input[end] == input[end + 1]))
                {
                    ++end;
                }
            }
            for (; p < end; p += std::min<std::size_t>(end - p, 128))
            {
                const std::size_t length = std::min<std::size_t>(end - p, 128);
                if (repeats)
                {
                    output.push_back(static_cast<char>(257 - length));
                    output.push_back(input[p]);
                }
                else
                {
                    output.push_back(static_cast<char>(length - 1));
                    output.append(input, p, length);
                }
            }
        }
        return output;
    }

    inline std::string ASCIIHex(const std::string& input)
    {
        std::string output;
        for (const char c : input)
        {
            output.push_back("0123456789abcdef"[static_cast<unsigned char>(c) >> 4]);
            output.push_back("0123456789abcdef"[static_cast<unsigned char>(c) & 15]);
        }
        return output;
    }

    /// The whole groups of the input.
    inline std::string ASCII85(const std::string& input)
    {
        std::string output;
        for (std::size_t p = 0; p + 4 <= input.size(); p += 4)
        {
            std::uint32_t number = 0;
            for (std::size_t i = 0; i < 4; ++i)
            {
                number = number * 256 + static_cast<unsigned char>(input[p + i]);
            }
            if (number == 0)
            {
                output.push_back('z');
                continue;
            }
            std::string digits(5, '!');
            for (std::size_t i = 5; i-- > 0; number /= 85)
            {
                digits[i] = static_cast<char>('!' + number % 85);
            }
            output += digits;
        }
        return output;
    }
}
