// Chunks over the bytes of a test, which keeps them alive.
#pragma once

#include "rasteroutput/RawChunkRef.h"

#include <cstdint>
#include <vector>

namespace RasterOutputTest
{
    using Bytes = std::vector<unsigned char>;

    /// All the bytes as one range.
    inline RasterOutput::RawChunkRef::Plane PlaneOf(Bytes& bytes)
    {
        RasterOutput::RawChunkRef::Plane plane;
        plane.SetRange(bytes.data(), bytes.data() + bytes.size());
        return plane;
    }

    /// A planar chunk of any class, with one plane over each of the buffers.
    template <class Chunk>
    Chunk
    PlanarChunk(std::uint32_t bitsPerComponent, std::int32_t width, std::int32_t height, std::vector<Bytes*> planes)
    {
        Chunk chunk;
        chunk.componentsPerSample = static_cast<std::uint32_t>(planes.size());
        chunk.bitsPerComponent = bitsPerComponent;
        chunk.width = width;
        chunk.height = height;
        chunk.ResetPlanes();
        for (std::uint32_t i = 0; i < chunk.size(); ++i)
        {
            chunk.SetPlane(i, PlaneOf(*planes[i]));
        }
        return chunk;
    }
}
