// The eight ways to lay an image down. They stand apart as arithmetic alone: a file's orientation and a host's become one.
#pragma once

#include <RasterFeedLib.h>

#include <cstdint>

namespace RasterFeed
{
    /// Where the pixels of a turned image come from: its column and row are, or if it is transposed its row and column, the
    /// image's column and row, each counted from the other end if it is flipped.
    struct Turn
    {
        bool isTransposed = false;
        bool flipsColumns = false; ///< of the image
        bool flipsRows = false;    ///< of the image
    };

    /// `second` after `first`.
    Turn Combine(const Turn& first, const Turn& second);

    /// What makes an image upright that has this TIFF orientation, 1 to 8.
    Turn UprightTurn(std::uint32_t orientation);

    Turn TurnOf(RasterFeedOrientation orientation);
}
