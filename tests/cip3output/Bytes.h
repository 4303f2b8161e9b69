// Bytes in the notation of the tables in these tests.
#pragma once

#include "rasteroutput/DataRef.h"

#include <cstddef>
#include <string>
#include <vector>

namespace CIP3OutputTest
{
    /// The bytes of "FD FF 00".
    inline std::string Hex(const std::string& text)
    {
        std::string bytes;
        for (std::size_t i = 0; i < text.size(); i += 3)
        {
            bytes.push_back(static_cast<char>(std::stoi(text.substr(i, 2), nullptr, 16)));
        }
        return bytes;
    }

    /// `count` times `bytes`.
    inline std::string Times(std::size_t count, const std::string& bytes)
    {
        std::string all;
        while (count-- > 0)
        {
            all += bytes;
        }
        return all;
    }

    /// `count` bytes no two neighbours of which are equal.
    inline std::string Literal(std::size_t count)
    {
        std::string bytes;
        for (std::size_t i = 0; i < count; ++i)
        {
            bytes.push_back(static_cast<char>(i % 251));
        }
        return bytes;
    }

    /// What a filter gives for a line that ends where its buffer ends.
    template <class Filter>
    std::string Filtered(Filter& filter, const std::string& line)
    {
        std::vector<unsigned char> bytes(line.begin(), line.end());
        RasterOutput::DataRef_Impl<RasterOutput::DataRefTraits> range;
        range.SetRange(bytes.data(), bytes.data() + bytes.size());
        const auto result = filter.Filter(range);
        return std::string(result.begin, result.end);
    }

    /// What a filter gives at the end.
    template <class Filter>
    std::string Finished(Filter& filter)
    {
        const auto result = filter.Finish();
        return std::string(result.begin, result.end);
    }
}
