// Layout of planes, and the search for planes of one value.
#include "rasteroutput/RawChunkRef.h"

#include "rasteroutput/RowBytes.h"

#include <PixelScan.h>

#include <algorithm>

namespace RasterOutput
{
    namespace
    {
        // The first byte stands for the whole plane, unless it mixes set and clear bits.
        bool IsUniformPlane(const RawChunkRef::Plane& plane, std::uint32_t bitsPerComponent)
        {
            constexpr unsigned char AllBitsSet = 0xFF;
            const unsigned char first = *plane.begin;
            if (first == 0)
            {
                return PixelScan::firstNonZero(plane.begin, plane.end) == plane.end;
            }
            if (bitsPerComponent == 1 && first != AllBitsSet)
            {
                return false;
            }
            return PixelScan::firstOtherThan(plane.begin, plane.end, first) == plane.end;
        }
    }

    RawChunkRef::~RawChunkRef() = default;

    std::uint32_t RawChunkRef::GetRowStride() const
    {
        return AlignedRowBytes(static_cast<std::uint32_t>(width), componentsPerSample, planar, bitsPerComponent, 1);
    }

    void RawChunkRef::ResetPlanes()
    {
        planes.assign(NumberOfPlanes(), Plane());
        uniform = planes.empty();
        uniformKnown = planes.empty();
    }

    void RawChunkRef::SetPlane(std::uint32_t index, const Plane& range)
    {
        planes[index].SetRange(range.begin, range.end);
    }

    void RawChunkRef::DetermineUniformity()
    {
        uniform = std::all_of(
            planes.begin(), planes.end(),
            [this](const Plane& plane) { return IsUniformPlane(plane, bitsPerComponent); });
        uniformKnown = true;
    }
}
