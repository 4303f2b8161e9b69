// A continued fraction, in doubles that never round.
#include "rasterfeed/WidthInUnits.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace RasterFeed
{
    double ResolutionOf(std::uint32_t width, const WidthInUnits& units)
    {
        return static_cast<double>(width) /
               (static_cast<double>(units.extent) / static_cast<double>(units.unitsPerInch));
    }

    WidthInUnits ExpressWidth(std::uint32_t width, double resolution)
    {
        // extent / unitsPerInch shall be width / resolution. No fraction of its size comes nearer to a number than a convergent
        // of its continued fraction, so those are tried in turn and, where they outgrow 32 bits, the last one that does not.
        // The arithmetic is exact: std::fmod does not round, and what is used of the other numbers stays below 2^53.
        constexpr double Largest = std::numeric_limits<std::int32_t>::max();
        double numerator = width;
        double denominator = resolution;
        double extent = 1, previousExtent = 0;
        double units = 0, previousUnits = 1;

        WidthInUnits best = {1, 1};
        double leastError = std::numeric_limits<double>::infinity();
        bool fits = true;
        while (fits && denominator > 0 && leastError > 0)
        {
            const double rest = std::fmod(numerator, denominator);
            const double quotient = std::round((numerator - rest) / denominator);
            const double largestStep =
                std::floor(std::min((Largest - previousExtent) / extent, (Largest - previousUnits) / units));
            fits = quotient <= largestStep;
            const double step = fits ? quotient : largestStep;
            previousExtent = std::exchange(extent, step * extent + previousExtent);
            previousUnits = std::exchange(units, step * units + previousUnits);
            numerator = std::exchange(denominator, rest);
            if (extent < 1 || units < 1)
            {
                continue;
            }

            const WidthInUnits candidate = {static_cast<std::int32_t>(extent), static_cast<std::int32_t>(units)};
            const double error = std::fabs(ResolutionOf(width, candidate) - resolution);
            if (error < leastError)
            {
                leastError = error;
                best = candidate;
            }
        }
        return best;
    }
}
