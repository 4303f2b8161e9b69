// Compressed strips decoded line by line, each into the space that the caller has for it: what is too large to hold, or is
// read as fast this way.
#pragma once

#include "rasterfeed/DeflateCheck.h"
#include "rasterfeed/RowSource.h"

#include <optional>

namespace RasterFeed
{
    /// Rows in the order in which they are stored only.
    class ScanlineRows : public RowSource
    {
    public:
        ScanlineRows(TiffFile& file, const SeparationForm& form);

        const unsigned char* Row(std::uint32_t row, unsigned char* space) override;

    private:
        TiffFile& file;
        SeparationForm form;
        std::optional<DeflateCheck> check; ///< of Deflate alone
    };
}
