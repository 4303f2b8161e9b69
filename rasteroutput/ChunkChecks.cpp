// Comparison and print of chunks.
#include "rasteroutput/ChunkChecks.h"

#include <PixelScan.h>

#include <algorithm>
#include <ostream>

namespace RasterOutput
{
    namespace
    {
        using Plane = RawChunkRef::Plane;

        bool IsSameRange(const Plane& a, const Plane& b)
        {
            return a.begin == b.begin && a.end == b.end;
        }

        bool HoldsSameBytes(const Plane& a, const Plane& b)
        {
            return IsSameRange(a, b) || std::equal(a.begin, a.end, b.begin, b.end);
        }

        template <class PlanePredicate>
        bool Matches(const RawChunkRef& a, const RawChunkRef& b, PlanePredicate samePlane)
        {
            return a.componentsPerSample == b.componentsPerSample && a.bitsPerComponent == b.bitsPerComponent &&
                   a.planar == b.planar && a.width == b.width && a.height == b.height &&
                   std::equal(a.planes.begin(), a.planes.end(), b.planes.begin(), b.planes.end(), samePlane);
        }
    }

    bool RefersToSameData(const RawChunkRef& a, const RawChunkRef& b)
    {
        return Matches(a, b, IsSameRange);
    }

    bool HasSameContent(const RawChunkRef& a, const RawChunkRef& b)
    {
        return Matches(a, b, HoldsSameBytes);
    }

    bool IsUniformRange(const unsigned char* begin, const unsigned char* end)
    {
        return PixelScan::firstOtherThan(begin, end, *begin) == end;
    }

    std::ostream& operator<<(std::ostream& stream, const RawChunkRef& chunk)
    {
        stream << "RawChunkRef" << std::endl;
        stream << "RawChunkRef.GetWidth(): " << chunk.GetWidth() << std::endl;
        stream << "RawChunkRef.GetHeight(): " << chunk.GetHeight() << std::endl;
        stream << "RawChunkRef.NumberOfPlanes(): " << chunk.NumberOfPlanes() << std::endl;
        stream << "RawChunkRef.BitsPerComponent(): " << chunk.BitsPerComponent() << std::endl;
        stream << "RawChunkRef.ComponentsPerSample(): " << chunk.ComponentsPerSample() << std::endl;
        stream << "RawChunkRef.IsInterleaved(): " << chunk.IsInterleaved() << std::endl;
        stream << "RawChunkRef.size(): " << chunk.size() << std::endl;
        for (std::uint32_t plane = 0; plane < chunk.size(); ++plane)
        {
            stream << "RawChunkRef[" << plane << "].size(): " << chunk[plane].size() << std::endl;
        }
        return stream;
    }
}
