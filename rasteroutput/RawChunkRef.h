// Reference to a rectangular chunk of raster: its geometry, and for each plane the range of bytes that holds it.
// Raster travels through the framework as such references, never as copies.
#pragma once

#include "rasteroutput/DataRef.h"

#include <cstdint>
#include <vector>

namespace RasterOutput
{
    /// A chunk of raster in buffers that the producer owns. Valid for the call that receives it; the receiver may rewrite
    /// the bytes, but keeps nothing of the reference. A producer sets the geometry, runs ResetPlanes() and points each
    /// plane at its bytes. Copying copies the ranges and no raster byte.
    class RawChunkRef
    {
    public:
        using Plane = DataRef_Impl<DataRefTraits>;

        /// No planes and no pixels; `planar` 1, both flags true.
        RawChunkRef() = default;
        RawChunkRef(const RawChunkRef&) = default;
        RawChunkRef& operator=(const RawChunkRef&) = default;
        virtual ~RawChunkRef();

        /// Bytes from one row of a plane to the next: rows without padding, unless a derived class knows better.
        virtual std::uint32_t GetRowStride() const;

        std::int32_t GetWidth() const { return width; }
        std::int32_t GetHeight() const { return height; }
        /// The planes that the geometry asks for, whether or not ResetPlanes() has made them.
        std::uint32_t NumberOfPlanes() const { return planar != 0 ? componentsPerSample : 1; }
        std::uint32_t BitsPerComponent() const { return bitsPerComponent; }
        std::uint32_t ComponentsPerSample() const { return componentsPerSample; }
        bool IsInterleaved() const { return planar == 0; }

        /// Entries in `planes`.
        std::uint32_t size() const { return static_cast<std::uint32_t>(planes.size()); }
        /// Plane `index`, which must be below size(); valid until `planes` changes.
        Plane& operator[](std::uint32_t index) { return planes[index]; }
        const Plane& operator[](std::uint32_t index) const { return planes[index]; }

        /// Makes `planes` hold NumberOfPlanes() empty ranges, whatever it held before. Both flags become true if that is
        /// none, else false. May throw std::bad_alloc.
        void ResetPlanes();

        /// Points plane `index`, which must be below size(), at the bytes of `range`.
        void SetPlane(std::uint32_t index, const Plane& range);

        /// Reads the bytes and sets `uniform` and `uniformKnown`. Each plane must hold at least one byte. Planes may
        /// differ from each other in their value; 1-bit planes are uniform only if all their bits are.
        void DetermineUniformity();

        /// One range of bytes per plane.
        std::vector<Plane> planes;
        /// Components of one sample: 4 for CMYK.
        std::uint32_t componentsPerSample = 0;
        /// Bit depth of one component; the framework processes 1 and 8.
        std::uint32_t bitsPerComponent = 0;
        /// 0: all components of a sample lie side by side in one plane. Any other value: one plane per component.
        std::uint32_t planar = 1;
        /// Pixels per row.
        std::int32_t width = 0;
        /// Rows.
        std::int32_t height = 0;
        /// Every plane holds one single value throughout; means something only while `uniformKnown` is true.
        bool uniform = true;
        /// `uniform` fits the bytes as they are. Who rewrites them runs DetermineUniformity() again or clears this.
        bool uniformKnown = true;
    };
}
