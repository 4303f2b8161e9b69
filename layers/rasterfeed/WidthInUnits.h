// The width of an image as two whole numbers from which its resolution comes back. It stands apart because it is
// arithmetic alone.
#pragma once

#include <cstdint>

namespace RasterFeed
{
    /// A width, and the unit it is stated in.
    struct WidthInUnits
    {
        std::int32_t extent;       ///< the width in units, at least 1
        std::int32_t unitsPerInch; ///< at least 1
    };

    /// The resolution that follows from a width in pixels and in units: width / (extent / unitsPerInch), in this order, in
    /// double precision. Pixels per inch.
    double ResolutionOf(std::uint32_t width, const WidthInUnits& units);

    /// The two numbers for an image of `width` pixels (at least 1) at `resolution` pixels per inch (finite, above 0) for which
    /// ResolutionOf gives `resolution` exactly, or as nearly as any two do.
    WidthInUnits ExpressWidth(std::uint32_t width, double resolution);
}
