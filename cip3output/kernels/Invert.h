// Inversion of preview data: the format's 255 is full ink, a scan line's is paper.
#pragma once

#include <cstddef>

namespace RasterOutput::Kernels
{
    /// Turns each of the `size` bytes from `bytes` on into 255 minus itself.
    void InvertBytes(unsigned char* bytes, std::size_t size) noexcept;
}
