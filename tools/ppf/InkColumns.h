// How much ink a separation takes, column by column across the sheet: all that ink presetting needs of a picture.
#pragma once

#include <cstdint>
#include <vector>

#include "ppf/Document.h"

namespace ppf
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

        /// Mean coverage of each of so many zones of one width, in per cent. A column that a zone's edge cuts counts
        /// in both zones by its parts.
        std::vector<double> Zones(std::uint64_t count) const;

        /// The same for zones that are so many columns wide, counted from the left edge; the last may be narrower.
        /// `width` is above 0.
        std::vector<double> ZonesOfWidth(double width) const;

    private:
        double MeanBetween(double left, double right) const;
    };

    /// Zones of this width that a number of columns takes. An overhang below a millionth of a zone is rounding.
    double CountOfZones(std::uint64_t columns, double width);

    /// Decodes a preview and sums the ink of each of its components. Throws FormatError if the data is damaged, too
    /// short, or of an image wider than any sheet.
    std::vector<InkColumns> MeasureInks(const Document& document, const Preview& preview);
}
