// The rows of an image one after the other, from either end, with the line named at which reading fails.
#pragma once

#include "rasterfeed/RowSource.h"

#include <cstdint>
#include <memory>

namespace RasterFeed
{
    class RowOrder
    {
    public:
        /// `fromBottom`: the row that is stored last comes first, which DecodeWay::Scanlines cannot do.
        RowOrder(std::unique_ptr<RowSource> source, std::uint32_t height, bool fromBottom);

        std::uint32_t Taken() const { return taken; }   ///< rows
        std::uint32_t Height() const { return height; } ///< rows

        /// The next row, as RowSource::Row gives it. Throws Refusal as that does, with the line in front, and after the last
        /// row.
        const unsigned char* Next(unsigned char* space);

    private:
        std::unique_ptr<RowSource> source;
        std::uint32_t height;
        bool fromBottom;
        std::uint32_t taken = 0;
    };
}
