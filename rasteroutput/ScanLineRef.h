// Reference to one row of raster, the unit in which a separation reaches a painter. A type of its own, so that the
// framework can tell a row from a band or a tile.
#pragma once

#include "rasteroutput/RawChunkRef.h"

namespace RasterOutput
{
    /// A chunk of one row.
    class ScanLineRef : public RawChunkRef
    {
    public:
        /// No planes and no pixels yet, but a `height` of 1.
        ScanLineRef() { height = 1; }
    };
}
