#include "RowSources.h"

#include "GroupFourEnd.h"
#include "Refusal.h"
#include "SourceFile.h"
#include "TiffFile.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

namespace
{
    [[noreturn]] void RefuseData(const TiffFile& file)
    {
        const std::string& complaint = file.Complaint();
        throw Refusal(
            "image data that ends early or cannot be decoded" + (complaint.empty() ? "" : " (" + complaint + ")") +
            "; image data that is all there is needed");
    }

    /// Prepares a strip or tile for decoding from its start.
    void BeginChunk(TiffFile& file, const SeparationForm& form, std::uint32_t chunk)
    {
        if (form.compression != COMPRESSION_CCITTFAX4)
            return;
        const std::uint64_t bytes = file.ChunkBytes(chunk);
        unsigned char tail[groupFourTailBytes];
        const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(bytes, sizeof tail));
        const std::uint64_t position = file.ChunkOffset(chunk) + bytes - count;
        if (file.Source().Read(position, tail, count) != count)
            RefuseData(file);
        if (const auto spoiled = SpoilGroupFourEnd(tail, count, form.lowestBitFirst))
            file.Overlay(position + spoiled->index, spoiled->value);
    }

    void DecodeScanline(TiffFile& file, std::uint32_t row, unsigned char* to)
    {
        if (file.Call([&](TIFF* tiff) { return TIFFReadScanline(tiff, to, row, 0); }) != 1 || !file.Complaint().empty())
            RefuseData(file);
    }

    /// Uncompressed strips, read without libtiff's detour over a copy of the whole strip.
    class StoredRows : public RowSource
    {
    public:
        StoredRows(TiffFile& tiff, const SeparationForm& imageForm)
            : file(tiff)
            , form(imageForm)
            , rowBytes(static_cast<std::size_t>(form.RowBytes()))
        {
        }

        const unsigned char* Row(std::uint32_t row, unsigned char* room) override
        {
            const std::uint64_t offset =
                file.ChunkOffset(row / form.chunkHeight) + std::uint64_t{row % form.chunkHeight} * rowBytes;
            if (file.Source().Read(offset, room, rowBytes) != rowBytes)
                throw Refusal("a file that was cut short while it was read; image data that is all there is needed");
            if (form.lowestBitFirst)
                TIFFReverseBits(room, static_cast<tmsize_t>(rowBytes));
            if (form.bits == 16 && form.byteSwapped)
            {
                for (std::size_t i = 0; i < rowBytes; i += 2)
                    std::swap(room[i], room[i + 1]);
            }
            return room;
        }

    private:
        TiffFile& file;
        SeparationForm form;
        std::size_t rowBytes;
    };

    /// Compressed strips too large to hold.
    class ScanlineRows : public RowSource
    {
    public:
        ScanlineRows(TiffFile& tiff, const SeparationForm& imageForm)
            : file(tiff)
            , form(imageForm)
        {
        }

        const unsigned char* Row(std::uint32_t row, unsigned char* room) override
        {
            if (row % form.chunkHeight == 0)
                BeginChunk(file, form, row / form.chunkHeight);
            DecodeScanline(file, row, room);
            return room;
        }

    private:
        TiffFile& file;
        SeparationForm form;
    };

    /// What StripRows and TileRows share: the decoded rows of one strip, or of the tiles side by side.
    class BlockRows : public RowSource
    {
    public:
        BlockRows(TiffFile& tiff, const SeparationForm& imageForm, std::size_t blockBytes)
            : file(tiff)
            , form(imageForm)
            , block(new unsigned char[blockBytes])
        {
        }

        const unsigned char* Row(std::uint32_t row, unsigned char* room) override
        {
            const std::uint32_t down = row / form.chunkHeight;
            if (down != present)
            {
                present = nothing;
                Decode(down);
                present = down;
            }
            return InBlock(row % form.chunkHeight, room);
        }

    protected:
        /// Fills the block with the strip or the tiles that are `down` from the first.
        virtual void Decode(std::uint32_t down) = 0;
        /// The row that is `row` from the block's first.
        virtual const unsigned char* InBlock(std::uint32_t row, unsigned char* room) const = 0;

        TiffFile& file;
        SeparationForm form;
        std::unique_ptr<unsigned char[]> block;

    private:
        static constexpr std::uint32_t nothing = ~0u;
        std::uint32_t present = nothing;
    };

    class StripRows : public BlockRows
    {
    public:
        using BlockRows::BlockRows;

    private:
        void Decode(std::uint32_t down) override
        {
            BeginChunk(file, form, down);
            const std::uint32_t rows = form.RowsOf(down);
            // Group 4 only line by line: decoding a whole strip, libtiff is silent about an end mark in its middle.
            if (form.compression == COMPRESSION_CCITTFAX4)
            {
                for (std::uint32_t row = 0; row < rows; ++row)
                    DecodeScanline(file, down * form.chunkHeight + row, block.get() + row * form.RowBytes());
                return;
            }
            const auto bytes = static_cast<tmsize_t>(form.RowBytes() * rows);
            const tmsize_t decoded =
                file.Call([&](TIFF* tiff) { return TIFFReadEncodedStrip(tiff, down, block.get(), bytes); });
            if (decoded != bytes || !file.Complaint().empty())
                RefuseData(file);
        }

        const unsigned char* InBlock(std::uint32_t row, unsigned char*) const override
        {
            return block.get() + row * form.RowBytes();
        }
    };

    class TileRows : public BlockRows
    {
    public:
        using BlockRows::BlockRows;

    private:
        void Decode(std::uint32_t down) override
        {
            const std::uint32_t across = form.ChunksAcross();
            for (std::uint32_t i = 0; i < across; ++i)
            {
                const std::uint32_t tile = down * across + i;
                BeginChunk(file, form, tile);
                const auto bytes = static_cast<tmsize_t>(form.ChunkBytes());
                unsigned char* const to = block.get() + i * form.ChunkBytes();
                const tmsize_t decoded =
                    file.Call([&](TIFF* tiff) { return TIFFReadEncodedTile(tiff, tile, to, bytes); });
                if (decoded != bytes || !file.Complaint().empty())
                    RefuseData(file);
            }
        }

        const unsigned char* InBlock(std::uint32_t row, unsigned char* room) const override
        {
            const auto width = static_cast<std::size_t>(form.ChunkRowBytes());
            const auto whole = static_cast<std::size_t>(form.RowBytes());
            const unsigned char* from = block.get() + row * width;
            for (std::size_t done = 0; done < whole; done += width, from += form.ChunkBytes())
                std::memcpy(room + done, from, std::min(width, whole - done));
            return room;
        }
    };
}

std::unique_ptr<RowSource> MakeRowSource(TiffFile& file, const SeparationForm& form, const DecodePlan& plan)
{
    switch (plan.way)
    {
    case DecodeWay::Stored:
        return std::make_unique<StoredRows>(file, form);
    case DecodeWay::Scanlines:
        return std::make_unique<ScanlineRows>(file, form);
    case DecodeWay::Strips:
        return std::make_unique<StripRows>(file, form, plan.blockBytes);
    default:
        return std::make_unique<TileRows>(file, form, plan.blockBytes);
    }
}
