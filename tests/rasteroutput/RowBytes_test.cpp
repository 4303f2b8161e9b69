// Row lengths, as a table.
#include "rasteroutput/RowBytes.h"

namespace RasterOutputTest
{
    using namespace RasterOutput;

    constexpr std::uint32_t Interleaved = 0, Planar = 1;

    // Packed bits fill whole bytes, of one component when planar, of all components side by side otherwise.
    static_assert(RowBytes(0, 1, Planar, 1) == 0);
    static_assert(RowBytes(8, 1, Planar, 1) == 1);
    static_assert(RowBytes(9, 3, Planar, 1) == 2);
    static_assert(RowBytes(9, 3, Interleaved, 1) == 4);
    // Any other depth takes a byte per sample; any non-zero `planar` is planar.
    static_assert(RowBytes(9, 3, Interleaved, 8) == 27);
    static_assert(RowBytes(9, 3, 7, 8) == 9);

    static_assert(AlignedRowBytes(9, 3, Interleaved, 8, 1) == 27);
    static_assert(AlignedRowBytes(9, 3, Interleaved, 8, 4) == 28);
    static_assert(AlignedRowBytes(28, 1, Planar, 8, 4) == 28);
}
