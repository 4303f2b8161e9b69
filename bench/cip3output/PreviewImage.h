// The three kinds of separation that the filters are measured on. Made by arithmetic alone, so that every machine
// measures the same bytes.
#pragma once

#include <cstddef>
#include <string>

/// A separation of Width x Height bytes.
struct PreviewImage
{
    static constexpr std::size_t Width = 4000;
    static constexpr std::size_t Height = 6000;

    enum class Kind
    {
        /// Lines of text and tints on paper: 97 % of all neighbours are equal.
        Flat,
        /// Gradients with the noise of a scan or a camera: 14 % are equal.
        Photo,
        /// Random bytes.
        Noise
    };

    explicit PreviewImage(Kind kind);

    /// The image of a kind, made on the first call.
    static const PreviewImage& Of(Kind kind);

    static const char* NameOf(Kind kind);

    const unsigned char* Line(std::size_t y) const
    {
        return reinterpret_cast<const unsigned char*>(bytes.data()) + y * Width;
    }

    /// Fraction of bytes that equal the byte behind them.
    double EqualNeighbours() const;

    std::string bytes;
};
