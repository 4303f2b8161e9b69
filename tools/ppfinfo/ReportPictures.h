// What the report draws of previews: inks on white paper as PNG in the text of a page, and where they add up to most.
#pragma once

#include "ppf/Pictures.h"
#include "ppfinfo/InkColours.h"

#include <optional>
#include <string>
#include <vector>

namespace PpfInfo
{
    /// A picture of one ink as "data:image/png;base64,...".
    std::string TintedPictureUrl(const Ppf::Picture& picture, const Colour& ink);

    /// Where the inks of a side lie thickest over each other. Takes pictures of one size only.
    class InkTotal
    {
    public:
        /// Per cents, and the pixel's position from the left and the top.
        struct Spot
        {
            double coverage;
            std::uint64_t x;
            std::uint64_t y;
        };

        /// Begins the next ink, whose rows are added from the top.
        void BeginInk(std::uint64_t theWidth, std::uint64_t theHeight);
        void Add(const unsigned char* row);

        /// Nothing for inks of several sizes, or for more or larger ones than can be added up.
        std::optional<Spot> Highest() const;

    private:
        std::uint64_t width = 0;
        std::uint64_t height = 0;
        unsigned inks = 0;
        std::uint64_t row = 0;
        bool fits = true;
        std::vector<std::uint16_t> sums;
    };
}
