// Lines of all lengths, of the kinds that are hard on the kernels.
#pragma once

#include <cstddef>
#include <random>
#include <string>

namespace CIP3OutputTest
{
    /// Kinds of lines that AnyLine makes.
    constexpr int LineKinds = 7;

    /// A line of `size` bytes of the kind `kind`, different for each `random`.
    inline std::string AnyLine(int kind, std::size_t size, std::mt19937& random)
    {
        std::string line;
        const auto put = [&line, size](std::size_t count, unsigned step, std::size_t value)
        {
            for (; count != 0 && line.size() < size; --count, value += step)
            {
                line.push_back(static_cast<char>(value));
            }
        };
        while (line.size() < size)
        {
            switch (kind)
            {
            case 0: // random bytes
                put(1, 0, random());
                break;
            case 1: // runs and literals, all short
                put(1 + random() % 4, random() % 2 != 0, random());
                break;
            case 2: // runs and literals about as long as a vector
                put(1 + random() % 130, random() % 2 != 0, random());
                break;
            case 3: // runs of few values, some longer than a token
                put(1 + random() % 700, 0, random() % 2);
                break;
            case 4: // a long literal with a pair here and there
                put(1 + random() % 400, 1, random());
                break;
            case 5: // runs of two bytes and more, and rarely a literal
                put(2 + random() % 60, 0, random());
                put(random() % 100 == 0 ? 1 + random() % 40 : 0, 1, random());
                break;
            default: // zeros with single bytes between
                put(1 + random() % 40, 0, 0);
                put(random() % 3, 1, random());
            }
        }
        return line;
    }
}
