// The pictures of the report: previews as inks on white paper, as PNG in the text of a page.
#pragma once

#include <string>
#include <vector>

#include "ppf/Pictures.h"
#include "ppfinfo/InkColours.h"

namespace ppfinfo
{
    /// A picture of one ink as "data:image/png;base64,...".
    std::string TintedPictureUrl(const ppf::Picture& picture, const Colour& ink);

    /// All inks of a side printed over each other. The first picture gives the size; others are fitted to it.
    class Composite
    {
    public:
        void Print(const ppf::Picture& picture, const Colour& ink);

        bool IsEmpty() const { return m_pixels.empty(); }
        std::string Url() const;

    private:
        std::uint64_t m_width = 0;
        std::uint64_t m_height = 0;
        std::vector<Colour> m_pixels;
    };
}
