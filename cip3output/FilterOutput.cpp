#include "cip3output/FilterOutput.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <stdexcept>

namespace RasterOutput
{
    void GrowFilterOutput(DataRefInstance& output, std::size_t inputSize, std::size_t minimum)
    {
        constexpr std::size_t LargestBuffer = std::numeric_limits<std::uint32_t>::max();
        if (inputSize > LargestBuffer / 2)
        {
            throw std::length_error("A scan line is too long for a preview filter");
        }
        const std::size_t needed = std::max(2 * inputSize, minimum);
        if (output.size() < needed)
        {
            output.Allocate(static_cast<std::uint32_t>(needed));
        }
    }

    DataRef FilledPart(const DataRefInstance& output, unsigned char* end)
    {
        DataRef part;
        part.begin = output.begin;
        part.end = end;
        return part;
    }

    unsigned char* Put(std::string_view bytes, unsigned char* place)
    {
        return std::copy(bytes.begin(), bytes.end(), place);
    }
}
