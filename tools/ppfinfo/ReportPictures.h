// The pictures of the report: previews as inks on white paper, as PNG in the text of a page.
#pragma once

#include "ppf/Pictures.h"
#include "ppfinfo/InkColours.h"

#include <string>
#include <vector>

namespace PpfInfo
{
    /// A picture of one ink as "data:image/png;base64,...".
    std::string TintedPictureUrl(const Ppf::Picture& picture, const Colour& ink);

    /// All inks of a side printed over each other. The first picture gives the size; others are fitted to it.
    class Composite
    {
    public:
        void Print(const Ppf::Picture& picture, const Colour& ink);

        bool IsEmpty() const { return pixels.empty(); }
        std::string Url() const;

    private:
        std::uint64_t width = 0;
        std::uint64_t height = 0;
        std::vector<Colour> pixels;
    };
}
