#include "WidthInUnits.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace
{
    constexpr double largest = std::numeric_limits<std::int32_t>::max();

    /// Looks through fractions for the one that gives a resolution best.
    class FractionSearch
    {
    public:
        FractionSearch(std::uint32_t pixels, double pixelsPerInch)
            : width(pixels)
            , wanted(pixelsPerInch)
        {
        }

        bool Exact() const { return error == 0; }
        const WidthInUnits& Best() const { return best; }

        /// Tries the convergents of numerator / denominator and, where those outgrow 32 bits, the last fraction that does
        /// not. Both numbers are at least 0, the second above 0. The arithmetic is exact: std::fmod does not round, and
        /// no other number here exceeds 2^53.
        void Follow(double numerator, double denominator)
        {
            double previousExtent = 0, extent = 1;
            double previousUnits = 1, units = 0;
            while (denominator > 0 && !Exact())
            {
                const double rest = std::fmod(numerator, denominator);
                const double room = std::floor(std::min(
                    (largest - previousExtent) / extent,
                    units > 0 ? (largest - previousUnits) / units : std::numeric_limits<double>::infinity()));
                const double quotient = std::round((numerator - rest) / denominator);
                const double step = std::min(quotient, room);
                previousExtent = std::exchange(extent, step * extent + previousExtent);
                previousUnits = std::exchange(units, step * units + previousUnits);
                Consider(extent, units);
                if (quotient > room)
                    return;
                numerator = std::exchange(denominator, rest);
            }
        }

    private:
        void Consider(double extent, double units)
        {
            if (extent < 1 || units < 1)
                return;
            const WidthInUnits candidate = {static_cast<std::int32_t>(extent), static_cast<std::int32_t>(units)};
            const double difference = std::fabs(ResolutionOf(width, candidate) - wanted);
            if (difference < error)
            {
                error = difference;
                best = candidate;
            }
        }

        std::uint32_t width;
        double wanted;
        double error = std::numeric_limits<double>::infinity();
        WidthInUnits best = {1, 1};
    };
}

double ResolutionOf(std::uint32_t width, const WidthInUnits& units)
{
    return static_cast<double>(width) / (static_cast<double>(units.extent) / static_cast<double>(units.unitsPerInch));
}

WidthInUnits ExpressWidth(std::uint32_t width, double resolution)
{
    // The extent in inches is width / resolution. Its convergents come near it fastest; the nearest doubles on either
    // side are for the case that two divisions, each rounded, miss the resolution by their last bit.
    FractionSearch search(width, resolution);
    search.Follow(width, resolution);
    const double inches = width / resolution;
    if (!search.Exact() && inches > 0 && std::isfinite(inches))
    {
        search.Follow(std::nextafter(inches, 0.0), 1);
        search.Follow(std::nextafter(inches, std::numeric_limits<double>::infinity()), 1);
    }
    return search.Best();
}
