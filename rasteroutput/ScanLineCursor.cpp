// Placing the current row, and moving on from it.
#include "rasteroutput/ScanLineCursor.h"

#include "rasteroutput/RowBytes.h"

#include <algorithm>
#include <cstddef>

namespace RasterOutput
{
    ScanLineCursor::ScanLineCursor(
        std::uint32_t componentsPerSample, std::uint32_t planar, std::uint32_t bitsPerComponent,
        const std::vector<DataRef_Impl<DataRefTraits>>& sourcePlanes, std::uint32_t stride,
        std::uint32_t firstByteOffset, std::uint32_t width, std::uint32_t row)
        : rowStride(stride)
        , rowIndex(row)
    {
        line.componentsPerSample = componentsPerSample;
        line.bitsPerComponent = bitsPerComponent;
        line.planar = planar;
        line.width = static_cast<std::int32_t>(width);
        if (sourcePlanes.empty())
        {
            return;
        }
        line.ResetPlanes();
        const std::size_t planes = std::min(line.planes.size(), sourcePlanes.size());
        // A plane may be longer than 4 GiB, so its offsets are not kept in 32 bits.
        const std::size_t offset = std::size_t{rowStride} * rowIndex + firstByteOffset;
        const std::uint32_t rowBytes = RowBytes(width, componentsPerSample, planar, bitsPerComponent);
        for (std::size_t plane = 0; plane < planes; ++plane)
        {
            unsigned char* const rowBegin = sourcePlanes[plane].begin + offset;
            line.planes[plane].SetRange(rowBegin, rowBegin + rowBytes);
        }
    }

    void ScanLineCursor::Step()
    {
        ++rowIndex;
        for (auto& plane : line.planes)
        {
            plane.SetRange(plane.begin + rowStride, plane.end + rowStride);
        }
    }

    void ScanLineCursor::Rebind(std::uint32_t stride, std::uint32_t row)
    {
        rowStride = stride;
        rowIndex = row;
        if (rowStride != 0)
        {
            line.ResetPlanes();
            return;
        }
        line.planes.clear();
        line.uniform = true;
        line.uniformKnown = true;
    }
}
