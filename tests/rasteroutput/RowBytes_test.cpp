// Row lengths, as a table.
#include "rasteroutput/RowBytes.h"

namespace RasterOutput
{
    constexpr std::uint32_t interleaved = 0, planar = 1;

    // Packed bits fill whole bytes, of one component when planar, of all components side by side otherwise.
    static_assert(RowBytes(0, 1, planar, 1) == 0);
    static_assert(RowBytes(8, 1, planar, 1) == 1);
    static_assert(RowBytes(9, 3, planar, 1) == 2);
    static_assert(RowBytes(9, 3, interleaved, 1) == 4);
    // Any other depth takes a byte per sample; any non-zero `planar` is planar.
    static_assert(RowBytes(9, 3, interleaved, 8) == 27);
    static_assert(RowBytes(9, 3, 7, 8) == 9);

    static_assert(AlignedRowBytes(9, 3, interleaved, 8, 1) == 27);
    static_assert(AlignedRowBytes(9, 3, interleaved, 8, 4) == 28);
    static_assert(AlignedRowBytes(28, 1, planar, 8, 4) == 28);
}
