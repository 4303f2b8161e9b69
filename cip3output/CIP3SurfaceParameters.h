// What a client says of one surface of a sheet before its separations.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace RasterOutput
{
    /// Parameters of one surface. All strings are byte strings and go into the document unchanged.
    struct CIP3SurfaceParameters
    {
        /// 0 is the front, any other value the back.
        std::int32_t side = 0;
        /// Names of the separations, in the order in which they follow; at least one.
        std::vector<std::string> separationNames;
        /// Further entries of the surface's section: key without its slash, and PostScript text.
        std::map<std::string, std::string> optionalParameters;
    };
}
