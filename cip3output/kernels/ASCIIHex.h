// Encoding of bytes as hexadecimal digits.
#pragma once

#include <cstddef>

namespace RasterOutput::Kernels
{
    /// Writes two digits in lower case for each of the `size` bytes from `input` on to `output`, 2 * size in all, and
    /// gives their end. The ranges do not overlap.
    unsigned char* EncodeASCIIHex(const unsigned char* input, std::size_t size, unsigned char* output) noexcept;
}
