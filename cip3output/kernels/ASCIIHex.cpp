#include "cip3output/kernels/ASCIIHex.h"

namespace RasterOutput::Kernels
{
    namespace
    {
        /// Arithmetic, not a table, as the compiler makes vectors of it.
        unsigned char Digit(int value)
        {
            return static_cast<unsigned char>(value + (value < 10 ? '0' : 'a' - 10));
        }
    }

    unsigned char* EncodeASCIIHex(const unsigned char* input, std::size_t size, unsigned char* output) noexcept
    {
        for (std::size_t i = 0; i < size; ++i)
        {
            output[2 * i] = Digit(input[i] >> 4);
            output[2 * i + 1] = Digit(input[i] & 0x0F);
        }
        return output + 2 * size;
    }
}
