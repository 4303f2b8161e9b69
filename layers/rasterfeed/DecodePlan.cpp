// The bounds of memory and time, and the checks of an image's directory against its file.
#include "rasterfeed/DecodePlan.h"

#include "rasterfeed/Refusal.h"
#include "rasterfeed/SourceFile.h"
#include "rasterfeed/TiffFile.h"

#include <algorithm>
#include <string>

namespace RasterFeed
{
    namespace
    {
        constexpr std::uint64_t Mebibyte = 1024ull * 1024;

        // Of the 256 MiB that a file may take beyond its rows; the rest is for libtiff's own state and transient copies.
        constexpr std::uint64_t MostMemory = 216 * Mebibyte;

        // A strip that decodes to no more than this is decoded as a whole, if that is of use. So is one of Deflate that takes
        // no more than this in the file and decodes to what a preview's whole image may: ten times faster when it is flat.
        constexpr std::uint64_t ComfortableStrip = 1 * Mebibyte;
        constexpr std::uint64_t ComfortableImage = 32 * Mebibyte;

        // libtiff keeps a place and a length, 8 bytes each, of every strip or tile.
        constexpr std::uint64_t MostChunks = Mebibyte;
        constexpr std::uint64_t BytesPerChunk = 16;

        // Tiles may reach over the image's edges, but not so far that the padding takes most of the time.
        constexpr std::uint64_t MostPadding = 8;
        constexpr std::uint64_t FreePadding = 64 * Mebibyte;

        std::string Bytes(std::uint64_t count)
        {
            return std::to_string(count) + " bytes";
        }

        /// What a decoder keeps besides its input and output, at most.
        std::uint64_t CodecMemory(const SeparationForm& form)
        {
            if (form.IsFax())
            {
                return std::uint64_t{form.chunkWidth} * 16; // four 32-bit run lengths for each pixel
            }
            switch (form.compression)
            {
            case COMPRESSION_JPEG:
                return 100 * Mebibyte; // libtiff's bound for progressive JPEG
            case COMPRESSION_ZSTD:
                return 128 * Mebibyte; // the largest window that the library decodes
            case COMPRESSION_LZMA:
                return form.ChunkBytes(); // a dictionary of any size holds no more than was decoded
            default:
                return Mebibyte;
            }
        }

        /// Whether to decode strips as a whole, of which the largest takes `stored` bytes in the file. Deflate is several times
        /// faster then, and PackBits survives writers that let a run go on into the next row; LZW and Group 4 are as fast line
        /// by line and need no room. CCITT RLE can be decoded to a strip's end only so.
        bool DecodesWholeStrips(const SeparationForm& form, std::uint64_t stored)
        {
            switch (form.compression)
            {
            case COMPRESSION_LZW:
            case COMPRESSION_CCITTFAX4:
                return false;
            case COMPRESSION_CCITTRLE:
                return true;
            case COMPRESSION_ADOBE_DEFLATE:
            case COMPRESSION_DEFLATE:
                return form.ChunkBytes() <= (stored <= ComfortableStrip ? ComfortableImage : ComfortableStrip);
            default:
                return form.ChunkBytes() <= ComfortableStrip;
            }
        }

        /// Checks every strip or tile against the file, and gives the bytes of the largest.
        std::uint64_t CheckChunks(const TiffFile& file, const SeparationForm& form)
        {
            const std::string name = form.tiled ? "tile " : "strip ";
            const std::uint64_t across = form.ChunksAcross();
            const std::uint64_t count = form.ChunksOfPlane();
            if (count > MostChunks || count * form.planes > MostChunks)
            {
                throw Refusal(
                    std::to_string(count * form.planes) + (form.tiled ? " tiles" : " strips") +
                    "; up to 1048576 are accepted");
            }

            const std::uint64_t fileBytes = file.Source().Size();
            std::uint64_t largest = 0;
            for (std::uint32_t index = 0; index < count; ++index)
            {
                const std::uint32_t chunk = form.ChunkOf(index);
                const std::uint64_t offset = file.ChunkOffset(chunk);
                const std::uint64_t bytes = file.ChunkBytes(chunk);
                const auto refuse = [&](const std::string& what)
                {
                    throw Refusal(
                        name + std::to_string(chunk + 1) + " of " + std::to_string(count * form.planes) + " " + what +
                        "; image data that is all there is needed");
                };
                if (offset == 0 || bytes == 0)
                {
                    refuse("has no data");
                }
                const auto checkInside = [&](std::uint64_t length)
                {
                    if (offset > fileBytes || length > fileBytes - offset)
                    {
                        refuse(
                            "of " + Bytes(length) + " at byte " + std::to_string(offset) +
                            " reaches beyond the end of the file of " + Bytes(fileBytes));
                    }
                };
                checkInside(bytes);
                if (form.compression == COMPRESSION_NONE)
                {
                    const std::uint64_t rows =
                        form.tiled ? form.chunkHeight : form.RowsOf(static_cast<std::uint32_t>(index / across));
                    const std::uint64_t needed = form.ChunkRowBytes() * rows;
                    // Where libtiff disbelieves the stated lengths it works them out as whole ones.
                    const std::uint64_t stated = form.tiled ? bytes : file.StatedStripBytes(chunk).value_or(bytes);
                    if (std::min(bytes, stated) < needed)
                    {
                        refuse("has " + Bytes(std::min(bytes, stated)) + " of " + Bytes(needed));
                    }
                    checkInside(stated);
                }
                largest = std::max(largest, bytes);
            }
            return largest;
        }
    }

    DecodePlan PlanDecoding(const TiffFile& file, const SeparationForm& form, bool fromBottom)
    {
        if (file.DecodedRowBytes() != form.ChunkRowBytes())
        {
            throw Refusal(
                "rows of " + Bytes(file.DecodedRowBytes()) + "; " + Bytes(form.ChunkRowBytes()) + " are expected");
        }
        const std::uint64_t largestChunk = CheckChunks(file, form);

        DecodePlan plan = {};
        std::uint64_t block = 0; // bytes
        const bool stored = form.compression == COMPRESSION_NONE;
        if (form.tiled)
        {
            plan.way = DecodeWay::Tiles;
            block = form.ChunkBytes() * form.ChunksAcross();
        }
        else if (stored)
        {
            plan.way = DecodeWay::Stored;
        }
        else if (fromBottom || DecodesWholeStrips(form, largestChunk))
        {
            plan.way = DecodeWay::Strips;
            block = form.ChunkBytes();
        }
        else
        {
            plan.way = DecodeWay::Scanlines;
        }

        const std::uint64_t lists = form.ChunksOfPlane() * form.planes * BytesPerChunk;
        const std::uint64_t decoder = stored ? 0 : largestChunk + CodecMemory(form);
        const auto check = [&](std::uint64_t memory)
        {
            if (memory > MostMemory)
            {
                throw Refusal(
                    std::string(form.tiled ? "tiles" : "strips") + " that take " + Bytes(memory) +
                    " of memory to decode; up to " + Bytes(MostMemory) + " are accepted");
            }
        };
        check(block); // by itself first: a sum of absurd sizes would wrap around
        check(block + decoder + lists + file.Facts().tagBytes);
        if (form.tiled && block * form.ChunksDown() / MostPadding > form.RowBytes() * form.height + FreePadding)
        {
            throw Refusal(
                "tiles of " + std::to_string(form.chunkWidth) + " x " + std::to_string(form.chunkHeight) +
                " pixels for an image of " + std::to_string(form.width) + " x " + std::to_string(form.height) +
                "; tiles that fit the image are accepted");
        }
        plan.blockBytes = static_cast<std::size_t>(block);
        return plan;
    }
}
