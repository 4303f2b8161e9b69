// Sums of an image's rows over the cells of a reduction, and the pixels that follow. The interface stands apart so that the
// reduction does not care how rows are stored; one class sums bits, one bytes.
#pragma once

#include "rasterfeed/CellEdges.h"
#include "rasterfeed/SeparationForm.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace RasterFeed
{
    /// Sums over one row of cells at a time. (Add* Finish)*
    class CellSums
    {
    public:
        virtual ~CellSums() = default;

        /// Adds a stored row, of which `weight` lies in the cells: 1/65536 of a row, up to 65536.
        virtual void Add(const unsigned char* row, std::uint32_t weight) = 0;

        /// Writes a pixel for each cell to `line`: the mean over the cell, which is `height` high, what was not added being paper.
        /// Further channels follow `pitch` bytes after each other. The sums are 0 again then. 1/65536 of a row, above 0.
        virtual void Finish(std::uint64_t height, unsigned char* line, std::size_t pitch) = 0;
    };

    /// Sums for rows of an image of that form over these cells, none of them higher than `greatestHeight`, for each of the
    /// channels `samples`, which are stored together. Exact whatever the sizes. Throws Refusal if they would take more than
    /// 256 MiB.
    std::unique_ptr<CellSums> MakeCellSums(
        const SeparationForm& form, const std::vector<unsigned>& samples, const CellEdges& columns,
        std::uint64_t greatestHeight);
}
