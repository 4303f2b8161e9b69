// What a file was meant to hold, for whoever has made one: sheets, sides and separations to hold the file against. Apart
// from the check because that knows the file alone.
#pragma once

#include "ppf/Document.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Ppf
{
    struct ExpectedSeparation
    {
        /// Decoded, as are all names here.
        std::string name;
        /// Pixels as stored; 0: any.
        std::uint64_t width = 0;
        std::uint64_t height = 0;
    };

    struct ExpectedSide
    {
        Side side = Side::Front;
        /// In their order.
        std::vector<ExpectedSeparation> separations;
    };

    struct ExpectedSheet
    {
        std::string jobName;
        /// Empty: none.
        std::string sheetName;
        std::vector<ExpectedSide> sides;
    };

    /// In what a document differs from what it was meant to hold, in the order of the file. An empty list: in nothing.
    std::vector<Finding> CheckAgainst(const Document& document, const std::vector<ExpectedSheet>& sheets);
}
