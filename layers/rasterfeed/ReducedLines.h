// A reduced image, line by line: every row of the image is read once and added to the cells that it lies in.
#pragma once

#include "rasterfeed/CellEdges.h"
#include "rasterfeed/CellSums.h"
#include "rasterfeed/LineSource.h"
#include "rasterfeed/RowOrder.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace RasterFeed
{
    class ReducedLines : public LineSource
    {
    public:
        /// `columns` and `lines` are the cells along the rows and across them, the latter in the order in which rows are read.
        /// `samples`: the channels, of those that are stored together. `isMirrored`: lines run from right to left.
        ReducedLines(
            RowOrder rows, const SeparationForm& form, const std::vector<unsigned>& samples, const CellEdges& columns,
            const CellEdges& lines, bool isMirrored);

        void Next(unsigned char* line, std::size_t pitch) override;

    private:
        void NextRow();

        RowOrder rows;
        CellEdges edges;   ///< of the lines
        std::size_t cells; ///< in a line
        std::size_t channels;
        bool isMirrored;
        std::unique_ptr<CellSums> sums;
        std::unique_ptr<unsigned char[]> space; ///< holds a row, if its source does not
        const unsigned char* row = nullptr;     ///< the row that was read last
        std::size_t done = 0;                   ///< lines
    };
}
