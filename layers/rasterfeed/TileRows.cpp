#include "rasterfeed/TileRows.h"

#include "rasterfeed/ChunkDecoding.h"

#include <algorithm>
#include <cstring>

namespace RasterFeed
{
    TileRows::TileRows(TiffFile& tiff, const SeparationForm& imageForm, std::size_t blockBytes)
        : file(tiff)
        , form(imageForm)
        , block(new unsigned char[blockBytes])
    {
        if (form.IsDeflate())
        {
            check.emplace(file, form);
        }
    }

    const unsigned char* TileRows::Row(std::uint32_t row, unsigned char* space)
    {
        const std::uint32_t down = row / form.chunkHeight;
        if (present != down)
        {
            present.reset();
            const std::uint32_t across = form.ChunksAcross();
            for (std::uint32_t i = 0; i < across; ++i)
            {
                const std::uint32_t tile = form.ChunkOf(down * across + i);
                unsigned char* const to = block.get() + i * form.ChunkBytes();
                DecodeTile(file, tile, to, form.ChunkBytes());
                if (check)
                {
                    check->Take(to, form.ChunkBytes());
                    check->Finish(tile);
                }
            }
            present = down;
        }
        const auto tileRow = static_cast<std::size_t>(form.ChunkRowBytes());
        const auto wholeRow = static_cast<std::size_t>(form.RowBytes());
        const unsigned char* from = block.get() + row % form.chunkHeight * tileRow;
        for (std::size_t done = 0; done < wholeRow; done += tileRow, from += form.ChunkBytes())
        {
            std::memcpy(space + done, from, std::min(tileRow, wholeRow - done));
        }
        return space;
    }
}
