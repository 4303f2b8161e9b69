// The arithmetic of a cell: whole numbers wide enough, and the mean.
#pragma once

#include <cstdint>
#include <limits>

namespace RasterFeed
{
    /// For cells whose sums pass 64 bits: those of more than 4096 x 4096 pixels or so.
    __extension__ typedef unsigned __int128 WideSum;

    /// The largest area of a cell that MeanPixel takes with sums of that type.
    template <class Sum>
    constexpr Sum LargestArea = ~Sum{0} / 511;

    /// The mean of a cell of that area, from 255 times the area of paper, plus each value times its area; to the nearest whole
    /// number, a half upwards.
    template <class Sum>
    unsigned char MeanPixel(Sum sum, Sum area)
    {
        return static_cast<unsigned char>((2 * sum + area) / (2 * area));
    }
}
