// How inks look on a screen.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace PpfInfo
{
    struct Colour
    {
        unsigned char red;
        unsigned char green;
        unsigned char blue;
    };

    /// The colours of a side's inks, in their order. Process inks are known by their names; a spot ink gets the hue
    /// that its name speaks of ("Orange 021") or one that follows from its letters, so that it looks the same in every
    /// report of these inks, moved on where another ink of the side is too close to it.
    std::vector<Colour> InkColours(const std::vector<std::string>& names);

    /// "#00aeef".
    std::string HexOf(const Colour& colour);

    /// A colour seen through so much ink: a sample of 0 leaves it, 255 multiplies it by the ink's colour.
    Colour Printed(const Colour& paper, const Colour& ink, unsigned char sample);
}
