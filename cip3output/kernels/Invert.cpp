#include "cip3output/kernels/Invert.h"

namespace RasterOutput::Kernels
{
    void InvertBytes(unsigned char* bytes, std::size_t size) noexcept
    {
        for (std::size_t i = 0; i < size; ++i)
        {
            bytes[i] = static_cast<unsigned char>(255 - bytes[i]);
        }
    }
}
