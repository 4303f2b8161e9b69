// Tables for depths below 8 bits, arithmetic for 8 and 16.
#include "rasterfeed/SampleExpansion.h"

#include <algorithm>
#include <cstring>

namespace RasterFeed
{
    SampleExpansion::SampleExpansion(unsigned bitsPerSample, bool inverted, bool fromRight, std::size_t samples)
        : bits(bitsPerSample)
        , mirrored(fromRight)
        , width(samples)
        , flip(inverted ? 255 : 0)
        , expanded()
    {
        if (bits >= 8)
        {
            return;
        }
        const unsigned highest = (1u << bits) - 1;
        for (unsigned byte = 0; byte < 256; ++byte)
        {
            for (unsigned i = 0; i < 8 / bits; ++i)
            {
                const unsigned sample = byte >> (8 - bits - i * bits) & highest;
                expanded[byte][i] = static_cast<unsigned char>(sample * (255 / highest) ^ flip);
            }
        }
    }

    template <unsigned SamplesPerByte>
    void SampleExpansion::Unpack(const unsigned char* row, unsigned char* line) const
    {
        const std::size_t whole = width / SamplesPerByte;
        for (std::size_t i = 0; i < whole; ++i)
        {
            std::memcpy(line + i * SamplesPerByte, expanded[row[i]].data(), SamplesPerByte);
        }
        const std::size_t rest = width % SamplesPerByte;
        if (rest != 0)
        {
            std::memcpy(line + whole * SamplesPerByte, expanded[row[whole]].data(), rest);
        }
    }

    void SampleExpansion::Expand(const unsigned char* row, unsigned char* line) const
    {
        switch (bits)
        {
        case 1:
            Unpack<8>(row, line);
            break;
        case 2:
            Unpack<4>(row, line);
            break;
        case 4:
            Unpack<2>(row, line);
            break;
        case 8:
            if (flip != 0)
            {
                for (std::size_t i = 0; i < width; ++i)
                {
                    line[i] = static_cast<unsigned char>(row[i] ^ 255);
                }
            }
            else if (row != line)
            {
                std::memcpy(line, row, width);
            }
            break;
        default:
            for (std::size_t i = 0; i < width; ++i)
            {
                std::uint16_t sample;
                std::memcpy(&sample, row + i * 2, sizeof sample);
                // sample / 257 rounded to the nearest, for all 65536 values.
                const std::uint32_t byte = (sample * 255u + 32895u) >> 16;
                line[i] = static_cast<unsigned char>(byte ^ flip);
            }
            break;
        }
        if (mirrored)
        {
            std::reverse(line, line + width);
        }
    }
}
