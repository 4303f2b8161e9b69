// Compressed strips decoded as a whole and kept while their rows are asked for: faster than line by line where the codec
// has a way of its own for it, and the only way to begin with a strip's last row.
#pragma once

#include "rasterfeed/DeflateCheck.h"
#include "rasterfeed/RowSource.h"

#include <cstddef>
#include <optional>

namespace RasterFeed
{
    class StripRows : public RowSource
    {
    public:
        /// `blockBytes`: what the largest strip takes when decoded.
        StripRows(TiffFile& file, const SeparationForm& form, std::size_t blockBytes);

        const unsigned char* Row(std::uint32_t row, unsigned char* space) override;

    private:
        TiffFile& file;
        SeparationForm form;
        std::optional<DeflateCheck> check; ///< of Deflate alone
        std::unique_ptr<unsigned char[]> block;
        std::optional<std::uint32_t> present; ///< the strip in the block
    };
}
