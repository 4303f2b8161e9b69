// Tiles: one row of them is kept decoded, one tile after the other, while the rows that run through them are asked for.
#pragma once

#include "rasterfeed/DeflateCheck.h"
#include "rasterfeed/RowSource.h"

#include <cstddef>
#include <optional>

namespace RasterFeed
{
    class TileRows : public RowSource
    {
    public:
        /// `blockBytes`: what a row of tiles takes when decoded.
        TileRows(TiffFile& file, const SeparationForm& form, std::size_t blockBytes);

        const unsigned char* Row(std::uint32_t row, unsigned char* space) override;

    private:
        TiffFile& file;
        SeparationForm form;
        std::optional<DeflateCheck> check; ///< of Deflate alone
        std::unique_ptr<unsigned char[]> block;
        std::optional<std::uint32_t> present; ///< the row of tiles in the block, counted from the first stored
    };
}
