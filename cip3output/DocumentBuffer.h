// The document while it is written: bytes with a write position. It grows block by block, so that nothing written is
// ever copied and the memory in use stays close to the size of the document, whatever that is.
#pragma once

#include "cip3output/LargePages.h"
#include "cip3output/PpfFormat.h"

#include <cstddef>
#include <memory>
#include <new>
#include <string_view>
#include <vector>

namespace RasterOutput
{
    /// Growing document with a write position. Writing inside what is there overwrites it and never shortens it.
    /// A call that throws leaves content, size and position as they were.
    class DocumentBuffer
    {
    public:
        /// Empty, and refuses to grow beyond `maxSize` bytes.
        explicit DocumentBuffer(std::size_t maxSize = PpfFormat::MaxDocumentSize)
            : limit(maxSize)
        {
        }

        /// Writes `bytes` at the write position and moves it behind them. Throws std::length_error if the document
        /// would pass its limit, and std::bad_alloc.
        void Write(std::string_view bytes);

        /// Contiguous room for `capacity` bytes behind the document's end, where the write position has to be. Who fills
        /// a part of it says so with Commit; it is valid until any other call. Throws std::bad_alloc.
        unsigned char* Room(std::size_t capacity);

        /// Makes the first `count` bytes of the room that was asked for last part of the document, and moves the write
        /// position behind them. Throws std::length_error if the document would pass its limit.
        void Commit(std::size_t count);

        /// Tells about how many more bytes the document will get at least; until told, none. Memory is taken in large
        /// pages only as far as they will be filled, so that the last one is no waste.
        void Expect(std::size_t bytes) noexcept { expected = bytes; }

        /// Moves the write position to `newPosition`, which is at most Size().
        void Seek(std::size_t newPosition) noexcept { position = newPosition; }

        /// Bytes in front of the write position.
        std::size_t Position() const noexcept { return position; }

        /// Bytes of the document: the highest position ever written.
        std::size_t Size() const noexcept { return size; }

        /// Empties the document: calls `sink(const unsigned char* begin, std::size_t count)` on it piece by piece, from
        /// front to back, and gives back each piece's memory before the next call, which may so use it again.
        template <class Sink>
        void Drain(Sink sink)
        {
            for (Block& block : blocks)
            {
                sink(block.bytes.get(), block.used);
                block.bytes.reset();
            }
            blocks.clear();
            size = 0;
            position = 0;
        }

    private:
        struct Release
        {
            /// What the bytes were asked for with.
            std::align_val_t alignment;

            void operator()(unsigned char* bytes) const noexcept;
        };

        /// A stretch of the document. Capacity that is not used has never been touched and so takes no memory.
        struct Block
        {
            std::unique_ptr<unsigned char[], Release> bytes;
            std::size_t capacity;
            std::size_t used;
            /// In front of this offset it is settled in which size of pages the memory comes.
            std::size_t settled;
        };

        void AddBlock(std::size_t capacity);
        void SettlePage(Block& block, std::size_t capacity) noexcept;
        bool LargePagePays() const noexcept;
        void RefuseBeyondLimit(std::size_t extra) const;
        /// Writes as much as lies in front of the document's end; gives the rest.
        std::string_view Overwrite(std::string_view bytes) noexcept;

        /// Largest size allowed.
        std::size_t limit;
        /// Where the next byte goes, counted from the document's first.
        std::size_t position = 0;
        /// Sum of what the blocks hold.
        std::size_t size = 0;
        /// What Expect was last told.
        std::size_t expected = 0;
        LargePages largePages;
        /// In document order; the last one grows.
        std::vector<Block> blocks;
    };
}
