// The document while it is written: bytes with a write position. It grows block by block, so that nothing written is
// ever copied and the memory in use stays close to the size of the document, whatever that is.
#pragma once

#include "cip3output/PpfFormat.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace RasterOutput
{
    /// Growing document with a write position. Writing inside what is there overwrites it and never shortens it.
    /// A call that throws leaves content, size and position as they were.
    class DocumentBuffer
    {
    public:
        /// Bytes of a block: one large page, as the memory of common machines has them.
        static constexpr std::size_t BlockSize = std::size_t{2} << 20;

        /// Empty, and refuses to grow beyond `maxSize` bytes.
        explicit DocumentBuffer(std::size_t maxSize = PpfFormat::MaxDocumentSize)
            : limit(maxSize)
        {
        }

        /// Writes `bytes` at the write position and moves it after them. Throws std::length_error if the document would
        /// pass its limit, and std::bad_alloc.
        void Write(std::string_view bytes);

        /// Moves the write position to `newPosition`, which is at most Size().
        void Seek(std::size_t newPosition) noexcept { position = newPosition; }

        /// Bytes before the write position.
        std::size_t Position() const noexcept { return position; }

        /// Bytes of the document: the highest position ever written.
        std::size_t Size() const noexcept { return size; }

        /// Calls `sink(std::string_view)` on the document piece by piece, from front to back.
        template <class Sink>
        void ForEachPiece(Sink sink) const
        {
            for (std::size_t begin = 0; begin < size; begin += BlockSize)
            {
                sink(std::string_view(blocks[begin / BlockSize].get(), std::min(BlockSize, size - begin)));
            }
        }

    private:
        struct Release
        {
            void operator()(char* block) const noexcept;
        };
        using Block = std::unique_ptr<char[], Release>;

        static Block MakeBlock();

        /// Largest size allowed.
        std::size_t limit;
        /// Where the next byte goes, counted from the document's first.
        std::size_t position = 0;
        /// Bytes of the document.
        std::size_t size = 0;
        /// BlockSize bytes each, in document order; what is not yet written there takes no memory.
        std::vector<Block> blocks;
    };
}
