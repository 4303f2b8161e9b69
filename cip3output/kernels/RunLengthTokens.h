// Single tokens of run-length data, as every form of the kernel writes them where speed does not matter.
#pragma once

#include "cip3output/PpfFormat.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace RasterOutput::Kernels::RunLength
{
    using PpfFormat::LiteralBias;
    using PpfFormat::MaxTokenRun;
    using PpfFormat::RepeatBias;

    /// Writes a repeat run of any length; what a last token of one byte is left with is a literal run.
    inline unsigned char* PutRun(unsigned char value, std::size_t length, unsigned char* output)
    {
        for (; length >= MaxTokenRun; length -= MaxTokenRun)
        {
            *output++ = static_cast<unsigned char>(RepeatBias - MaxTokenRun);
            *output++ = value;
        }
        if (length != 0)
        {
            // Modulo 256 a length of 1 gives 0, the length byte of a literal run of 1.
            *output++ = static_cast<unsigned char>(RepeatBias - length);
            *output++ = value;
        }
        return output;
    }

    /// Writes a literal run of any length.
    inline unsigned char* PutLiteral(const unsigned char* input, std::size_t length, unsigned char* output)
    {
        while (length != 0)
        {
            const std::size_t count = std::min(length, MaxTokenRun);
            *output++ = static_cast<unsigned char>(count - LiteralBias);
            std::memcpy(output, input, count);
            input += count;
            output += count;
            length -= count;
        }
        return output;
    }
}
