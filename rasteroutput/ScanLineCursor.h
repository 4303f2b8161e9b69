// Walks a chunk of several rows as a succession of single ones.
#pragma once

#include "rasteroutput/ScanLineRef.h"

#include <cstdint>
#include <vector>

namespace RasterOutput
{
    /// The current row of a chunk, and the way to the next. Refers to the chunk's bytes and owns none; whoever steps it
    /// keeps count of the rows.
    class ScanLineCursor
    {
    public:
        /// Stands on row `row` of the planes given. `width` is in pixels; `stride` and `firstByteOffset` are in
        /// bytes of a plane. `sourcePlanes` holds the start of each plane, as many as the layout has, or none at all; of
        /// any other number, planes without a source stay empty, and sources without a plane are passed over.
        /// May throw std::bad_alloc.
        ScanLineCursor(
            std::uint32_t componentsPerSample, std::uint32_t planar, std::uint32_t bitsPerComponent,
            const std::vector<DataRef_Impl<DataRefTraits>>& sourcePlanes, std::uint32_t stride,
            std::uint32_t firstByteOffset, std::uint32_t width, std::uint32_t row);

        /// Moves to the next row. The caller sees to it that there is one.
        void Step();

        /// Takes over another stride and row number. The planes of `line` become empty ranges, to be set by the caller;
        /// a stride of 0 leaves no planes at all, which counts as uniform. May throw std::bad_alloc.
        void Rebind(std::uint32_t stride, std::uint32_t row);

        /// The current row.
        ScanLineRef line;
        /// Bytes from one row to the next in each plane.
        std::uint32_t rowStride;
        /// Index of the current row, from 0.
        std::uint32_t rowIndex;
    };
}
