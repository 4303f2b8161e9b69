// Encoding of groups of four bytes in base 85.
#pragma once

#include <cstddef>

namespace RasterOutput::Kernels
{
    /// Writes five characters for each of the `groups` groups of four bytes from `input` on to `output`, or 'z' alone
    /// for a group of zeros, and gives their end. There must be space for 5 * groups bytes at `output`, not all of which
    /// the characters need: what lies after them there is undetermined afterwards. The ranges do not overlap. Uses the
    /// best that the machine has.
    unsigned char* EncodeASCII85(const unsigned char* input, std::size_t groups, unsigned char* output) noexcept;

    /// Writes the five digits of one group, whatever its number.
    void EncodeASCII85Digits(const unsigned char* group, unsigned char* output) noexcept;
}
