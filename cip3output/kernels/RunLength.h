// Run-length compression of one range of bytes into tokens.
#pragma once

#include <cstddef>

namespace RasterOutput::Kernels
{
    /// Writes the tokens of the `size` bytes from `input` on to `output` and gives their end. There must be space for
    /// 2 * size bytes at `output`, not all of which the tokens need: what lies after them there is undetermined
    /// afterwards. The ranges do not overlap. Uses the best that the machine has.
    unsigned char* EncodeRunLength(const unsigned char* input, std::size_t size, unsigned char* output) noexcept;
}
