// The tokens of run-length data, byte by byte as the format has them.
#pragma once

#include "cip3output/PpfFormat.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace RasterOutput::Kernels
{
    /// Writes a repeat run of any length to `output`; gives the end of its tokens.
    inline unsigned char* PutRun(unsigned char value, std::size_t length, unsigned char* output)
    {
        while (length != 0)
        {
            const std::size_t count = std::min(length, PpfFormat::MaxTokenRun);
            // Modulo 256 a rest of 1 gives 0, the length byte of a literal run of 1.
            *output++ = static_cast<unsigned char>(PpfFormat::RepeatBias - count);
            *output++ = value;
            length -= count;
        }
        return output;
    }

    /// Writes a literal run of any length to `output`, where there is space for twice the `left` bytes of input from
    /// `input` on; gives the end of its tokens.
    inline unsigned char*
    PutLiteral(const unsigned char* input, std::size_t length, std::size_t left, unsigned char* output)
    {
        // A photo has millions of short ones, of lengths that no processor foresees: copied as far as the longest of them
        // goes, whatever the length, a photo's whole conversion takes two thirds of the time.
        constexpr std::size_t Short = 32;
        if (length <= Short && left >= Short)
        {
            *output = static_cast<unsigned char>(length - PpfFormat::LiteralBias);
            std::memcpy(output + 1, input, Short);
            return output + length + (length != 0);
        }
        while (length != 0)
        {
            const std::size_t count = std::min(length, PpfFormat::MaxTokenRun);
            *output++ = static_cast<unsigned char>(count - PpfFormat::LiteralBias);
            std::memcpy(output, input, count);
            input += count;
            output += count;
            length -= count;
        }
        return output;
    }
}
