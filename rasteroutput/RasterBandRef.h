// Reference to a band: several full rows of raster.
#pragma once

#include "rasteroutput/RawChunkRef.h"

#include <cstdint>

namespace RasterOutput
{
    /// A chunk of full rows. The band's samples may begin inside the rows of its buffer; a producer whose rows are
    /// longer than the band's own samples derives a class and overrides GetRowStride().
    class RasterBandRef : public RawChunkRef
    {
    public:
        /// Bytes from the start of a plane's row to the first sample of the band.
        std::uint32_t firstByteOffset = 0;
    };
}
