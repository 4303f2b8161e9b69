// Pictures as PNG, through libpng. Apart from what draws them because libpng's way of failing stays in here.
#pragma once

#include "ppf/Document.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>

namespace Ppf
{
    /// Writes one 8-bit picture, row by row: WriteRow for every row, then Finish.
    class PngWriter
    {
    public:
        enum class Colours
        {
            Grey,
            Rgb,
            /// A sample per pixel, which stands for a colour of the palette.
            Palette
        };

        /// Red, green and blue of each sample.
        using Palette = std::array<std::array<unsigned char, 3>, 256>;

        /// Writes to a stream, which has to outlive this object. The resolution, if any, becomes the picture's
        /// physical size; the palette counts only for a picture that has one. Every operation throws
        /// std::runtime_error if libpng fails; whether the stream has taken everything is for the caller to see.
        PngWriter(
            std::ostream& stream, std::uint64_t width, std::uint64_t height, Colours colours,
            const std::optional<Resolution>& resolution, const Palette& palette = {});
        ~PngWriter();
        PngWriter(const PngWriter&) = delete;
        PngWriter& operator=(const PngWriter&) = delete;

        /// One sample per pixel, or three for rgb.
        void WriteRow(const unsigned char* samples);

        void Finish();

    private:
        struct State;
        std::unique_ptr<State> state;
    };
}
