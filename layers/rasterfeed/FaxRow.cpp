#include "rasterfeed/FaxRow.h"

#include <algorithm>
#include <cstring>

#include <endian.h>

namespace RasterFeed
{
    void FillFaxRow(unsigned char* row, std::uint32_t* runs, std::uint32_t* endOfRuns, std::uint32_t width)
    {
        constexpr std::uint32_t WordBits = 64;
        std::uint64_t word = 0;   // its first pixel in the highest bit
        std::uint32_t before = 0; // pixels before the word
        const auto storeUntil = [&](std::uint32_t pixel)
        {
            for (; pixel - before >= WordBits; before += WordBits)
            {
                const std::uint64_t stored = htobe64(word);
                std::memcpy(row + before / 8, &stored, sizeof stored);
                word = (word & 1) != 0 ? ~std::uint64_t{0} : 0; // the colour goes on
            }
        };

        std::uint32_t pixel = 0;
        const auto changeColour = [&] { word ^= ~std::uint64_t{0} >> (pixel - before); }; // of the word's rest
        for (const std::uint32_t* run = runs; run != endOfRuns; ++run)
        {
            pixel += std::min(*run, width - pixel);
            storeUntil(pixel);
            changeColour();
        }
        if ((endOfRuns - runs) % 2 != 0)
        {
            changeColour();
        }
        storeUntil(width);
        const std::uint64_t stored = htobe64(word);
        std::memcpy(row + before / 8, &stored, (width - before + 7) / 8);
    }
}
