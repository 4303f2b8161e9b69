// Inspection of chunks from outside: do two of them refer to the same bytes, do they hold the same raster, and what do
// they look like in a diagnostic print.
#pragma once

#include "rasteroutput/RawChunkRef.h"

#include <iosfwd>

namespace RasterOutput
{
    /// True if the geometry of both is equal and every plane is the same range of the same buffer. The uniformity flags
    /// take no part, and no raster byte is read.
    bool RefersToSameData(const RawChunkRef& a, const RawChunkRef& b);

    /// True if the geometry of both is equal and every plane holds the same bytes, wherever they lie. The uniformity
    /// flags take no part.
    bool HasSameContent(const RawChunkRef& a, const RawChunkRef& b);

    /// True if all bytes in [begin, end), of which there must be at least one, are equal.
    bool IsUniformRange(const unsigned char* begin, const unsigned char* end);

    /// Prints geometry and plane sizes, one to a line, in the stream's current number and boolean formats.
    std::ostream& operator<<(std::ostream& stream, const RawChunkRef& chunk);
}
