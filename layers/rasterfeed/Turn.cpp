#include "rasterfeed/Turn.h"

namespace RasterFeed
{
    Turn Combine(const Turn& first, const Turn& second)
    {
        Turn both;
        both.isTransposed = first.isTransposed != second.isTransposed;
        both.flipsColumns = first.flipsColumns != (first.isTransposed ? second.flipsRows : second.flipsColumns);
        both.flipsRows = first.flipsRows != (first.isTransposed ? second.flipsColumns : second.flipsRows);
        return both;
    }

    Turn UprightTurn(std::uint32_t orientation)
    {
        // By the sides of the upright image at which the stored row 0 and column 0 lie.
        switch (orientation)
        {
        case 2: // top, right
            return {false, true, false};
        case 3: // bottom, right
            return {false, true, true};
        case 4: // bottom, left
            return {false, false, true};
        case 5: // left, top
            return {true, false, false};
        case 6: // right, top
            return {true, false, true};
        case 7: // right, bottom
            return {true, true, true};
        case 8: // left, bottom
            return {true, true, false};
        default: // top, left
            return {};
        }
    }

    Turn TurnOf(RasterFeedOrientation orientation)
    {
        switch (orientation)
        {
        case RasterFeedOrientation::Rotate90:
            return {true, true, false};
        case RasterFeedOrientation::Rotate180:
            return {false, true, true};
        case RasterFeedOrientation::Rotate270:
            return {true, false, true};
        case RasterFeedOrientation::Flip0:
            return {false, false, true};
        case RasterFeedOrientation::Flip90:
            return {true, false, false};
        case RasterFeedOrientation::Flip180:
            return {false, true, false};
        case RasterFeedOrientation::Flip270:
            return {true, true, true};
        case RasterFeedOrientation::Rotate0:
            break;
        }
        return {};
    }
}
