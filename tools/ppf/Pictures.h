// Previews as pictures that lie the right way up: in full for a file of their own, or scaled down for a page.
#pragma once

#include "ppf/Document.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace Ppf
{
    /// A picture of one ink, upright: a byte per pixel, 0 no ink to 255 full ink, rows from the top.
    struct Picture
    {
        std::uint64_t width = 0;
        std::uint64_t height = 0;
        std::vector<unsigned char> ink;
    };

    /// Hands the upright rows of one component to a function, from the top, a byte per pixel; the bytes may be
    /// changed and are valid during the call. Holds the decoded separation in memory only where rows have to come in another order.
    /// Throws FormatError if the data is damaged, and what the function throws.
    void DrawUpright(
        const Document& document, const Preview& preview, unsigned component,
        const std::function<void(unsigned char*)>& takeRow);

    /// The pictures of all components, scaled down by a whole number so that neither side is longer than `longest`
    /// pixels. A pixel is the mean of those that it stands for. Throws FormatError if the data is damaged.
    std::vector<Picture> ScaledPictures(const Document& document, const Preview& preview, std::uint64_t longest);
}
