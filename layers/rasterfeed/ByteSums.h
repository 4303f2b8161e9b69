// Sums of rows of any depth but one bit, as the bytes that they become. Columns are summed before cells, so that the work on
// every pixel is one addition of vectors.
#pragma once

#include "rasterfeed/CellSums.h"
#include "rasterfeed/SampleExpansion.h"

#include <cstddef>
#include <vector>

namespace RasterFeed
{
    /// `Sum` holds 511 times the area of a cell.
    template <class Sum>
    class ByteSums : public CellSums
    {
    public:
        ByteSums(
            const SeparationForm& form, const std::vector<unsigned>& channels, const std::vector<std::int64_t>& edges);

        void Add(const unsigned char* row, std::uint32_t weight) override;
        void Finish(std::uint64_t height, unsigned char* line, std::size_t pitch) override;

    private:
        void Spill();
        void FinishChannel(std::size_t sample, std::uint64_t height, unsigned char* line) const;
        std::uint64_t SumOfColumn(std::size_t column) const;

        bool isInverted;
        std::uint32_t width;
        std::size_t samples; ///< of a pixel
        std::size_t columns; ///< of samples
        std::vector<unsigned> channels;
        SampleExpansion expansion; ///< without inversion, which is for the means
        std::vector<std::int64_t> cellEdges;
        std::vector<unsigned char> expanded; ///< a row, where it is not bytes already

        // For each column.
        std::vector<std::uint16_t> wholeRows;   ///< of up to 257 rows of weight 65536, once each
        std::vector<std::uint32_t> partialRows; ///< of all others, times their weight: three rows at most
        std::vector<std::uint64_t> manyRows;    ///< what `wholeRows` cannot hold; empty until needed
        std::uint32_t rows = 0;                 ///< in `wholeRows`
        std::uint64_t added = 0;                ///< weight of all rows
    };
}
