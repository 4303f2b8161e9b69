// The codes and texts of the painter's failures, each written here and nowhere else.
#pragma once

#include <cstdint>

namespace RasterOutput
{
    /// Code that a CIP3PainterException carries.
    enum class CIP3PainterFailure : std::int32_t
    {
        CouldNotOpenFile = 0,
        FileStillOpen = 1,
        TooManySheets = 2,
        InvalidSheet = 3,
        InvalidSurface = 4,
        UnsupportedRaster = 5
    };

    namespace CIP3PainterText
    {
        constexpr char CouldNotOpenFile[] = "Could not open CIP3 file";
        constexpr char FileStillOpen[] = "InitializePainter called with file still open";
        constexpr char TooManySheets[] = "More sheets than expected in CIP3 document";
        constexpr char InvalidSheet[] = "Invalid sheet parameters";
        constexpr char InvalidSurface[] = "Invalid surface parameters";
        constexpr char NotPlanar8Bit[] = "CIP3 painter expects 8 bit planar data";
        constexpr char Interleaved[] = "Interleaved data not supported";
    }
}
