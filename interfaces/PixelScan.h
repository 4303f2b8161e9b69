// Searches in runs of bytes.
#pragma once

namespace PixelScan
{
    /// Address of the first byte in [begin, end) that is not 0, or `end` if there is none. Never throws.
    const unsigned char* firstNonZero(const unsigned char* begin, const unsigned char* end);

    /// Address of the first byte in [begin, end) that differs from `value`, or `end` if there is none. Never throws.
    const unsigned char* firstOtherThan(const unsigned char* begin, const unsigned char* end, unsigned char value);
}
