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

    /// Scales a picture down by a whole number while its rows come. Calls: Add for each row, then Finish.
    class Scaler
    {
    public:
        /// So that neither side is longer than `longest` pixels.
        Scaler(std::uint64_t width, std::uint64_t height, std::uint64_t longest);

        /// The next row, a byte per pixel.
        void Add(const unsigned char* row);

        /// The picture. A pixel is the mean of those that it stands for.
        Picture Finish();

    private:
        void EndRow();

        std::size_t factor;
        std::size_t columns;
        std::size_t rows = 0;
        /// Of the row that is being added up, one per pixel of the picture.
        std::vector<std::uint64_t> sums;
        Picture picture;
    };
}
