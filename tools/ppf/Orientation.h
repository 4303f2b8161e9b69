// How the rows of a preview image lie on the sheet. Apart from the decoder because rows come as they are stored, and
// only what draws them or divides them into ink zones needs to know which way is up.
#pragma once

#include <array>
#include <cstdint>

namespace Ppf
{
    /// The image matrix [a b c d tx ty] of PostScript: from the unit square, whose origin is the sheet's lower left
    /// corner, to the pixels of the stored image.
    using Matrix = std::array<double, 6>;

    /// One of the eight ways in which an image can lie on a sheet without being skewed or turned by other than right
    /// angles. Upright positions count from the sheet's upper left corner.
    struct Orientation
    {
        /// A stored row runs up or down the sheet.
        bool transposed = false;
        /// Stored columns and rows run against the upright ones that they belong to.
        bool columnsReversed = false;
        bool rowsReversed = false;

        /// Position in the stored image of an upright pixel. Width and height are those of the stored image.
        std::uint64_t StoredColumn(std::uint64_t x, std::uint64_t y, std::uint64_t width) const
        {
            const std::uint64_t along = transposed ? y : x;
            return columnsReversed ? width - 1 - along : along;
        }
        std::uint64_t StoredRow(std::uint64_t x, std::uint64_t y, std::uint64_t height) const
        {
            const std::uint64_t along = transposed ? x : y;
            return rowsReversed ? height - 1 - along : along;
        }

        bool IsUpright() const { return !transposed && !columnsReversed && !rowsReversed; }
    };

    /// True if the matrix is one of the eight orientations, whatever its scale.
    bool IsOrthogonal(const Matrix& matrix);

    /// The orientation of an orthogonal matrix.
    Orientation OrientationOf(const Matrix& matrix);

    /// True if an orthogonal matrix spreads exactly this stored image over the unit square.
    bool Spans(const Matrix& matrix, std::uint64_t width, std::uint64_t height);
}
