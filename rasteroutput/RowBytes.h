// Lengths of raster rows. The one place that knows how samples are packed into a plane's row.
#pragma once

#include <cstdint>

namespace RasterOutput
{
    /// Bytes of one plane's row of `width` pixels, without padding. Interleaved data (`planar` 0) has all components of
    /// a pixel in its one plane, any other `planar` one component per plane. 1-bit samples are packed eight to a byte,
    /// samples of any other depth take a byte each.
    constexpr std::uint32_t RowBytes(
        std::uint32_t width, std::uint32_t componentsPerSample, std::uint32_t planar, std::uint32_t bitsPerComponent)
    {
        const std::uint32_t samples = planar != 0 ? width : width * componentsPerSample;
        return bitsPerComponent == 1 ? (samples + 7) >> 3 : samples;
    }

    /// RowBytes() rounded up to a multiple of `alignment` bytes, which is at least 1.
    constexpr std::uint32_t AlignedRowBytes(
        std::uint32_t width, std::uint32_t componentsPerSample, std::uint32_t planar, std::uint32_t bitsPerComponent,
        std::uint32_t alignment)
    {
        const std::uint32_t raised = RowBytes(width, componentsPerSample, planar, bitsPerComponent) + alignment - 1;
        return raised - raised % alignment;
    }
}
