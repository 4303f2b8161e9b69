// Sums of bilevel rows: bits are counted, never expanded. A row that equals the one before is not counted again, since
// plates of text and tints are full of them.
#pragma once

#include "rasterfeed/BilevelCount.h"
#include "rasterfeed/CellSums.h"

#include <cstddef>

namespace RasterFeed
{
    /// `Sum` holds 511 times the area of a cell.
    template <class Sum>
    class BilevelSums : public CellSums
    {
    public:
        BilevelSums(const SeparationForm& form, const std::vector<std::int64_t>& edges);

        void Add(const unsigned char* row, std::uint32_t weight) override;
        void Finish(std::uint64_t height, unsigned char* line) override;

    private:
        void AddLast();

        std::size_t rowBytes;
        std::size_t words; ///< of 64 pixels, of a row
        bool onesAreInk;
        std::vector<std::int64_t> cellEdges;
        std::vector<BilevelEdge> places; ///< of the edges, those outside the image at its end

        std::vector<unsigned char> last; ///< the row that came last, with zeros up to a word after its end
        std::uint64_t lastWeight = 0;    ///< of that row, still to be added
        bool isCounted = false;          ///< `ones` is that row's

        // For each edge, the ones before it. The sums may wrap around; the differences between two edges do not.
        std::vector<std::uint32_t> before;    ///< work space of CountOnes
        std::vector<std::uint64_t> ones;      ///< of the last row
        std::vector<std::uint64_t> wholeRows; ///< of the rows of weight 65536, once each
        std::vector<Sum> partialRows;         ///< of all others, times their weight
        std::uint64_t added = 0;              ///< weight of all rows
    };
}
