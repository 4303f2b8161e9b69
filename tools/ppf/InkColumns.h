// How much ink a separation takes, column by column across the sheet: all that ink presetting needs of a picture.
#pragma once

#include "ppf/Document.h"

#include <cstdint>
#include <vector>

namespace Ppf
{
    /// The ink of one separation, summed down each column of the sheet.
    struct InkColumns
    {
        /// Samples of a column added up, 255 for each pixel of full ink; from the sheet's left edge to its right.
        std::vector<std::uint64_t> sums;
        /// Pixels of a column.
        std::uint64_t rows = 0;

        /// Mean coverage of the whole picture, in per cent of full ink.
        double Coverage() const;

        /// Mean coverage of each zone between two neighbouring edges, in per cent. Edges are in columns from the left and
        /// ascending. A column that an edge cuts counts in both zones by its parts; beyond the picture there is paper.
        std::vector<double> Zones(const std::vector<double>& edges) const;

    private:
        double MeanBetween(double left, double right) const;
    };

    /// Edges of so many zones of one width over a number of columns: one more than zones.
    std::vector<double> EdgesOfEqualZones(std::uint64_t columns, std::uint64_t count);

    /// Zones of this width, in columns, that a number of columns takes. An overhang below a millionth of a zone is
    /// rounding.
    double CountOfZones(std::uint64_t columns, double width);

    /// Their edges, from the left; the last zone may be narrower. The caller sees to it that they are not too many.
    std::vector<double> EdgesOfZones(std::uint64_t columns, double width);

    /// What decoding a preview in full tells about it.
    struct Measurement
    {
        /// For each component.
        std::vector<InkColumns> inks;
        /// Bytes that the data holds after the last row.
        std::uint64_t excess = 0;
    };

    /// Decodes a preview and sums the ink of each of its components. Throws FormatError if the data is damaged, too
    /// short, or of an image wider than any sheet.
    Measurement Measure(const Document& document, const Preview& preview);
}
