// Growth of the document and writing into its blocks.
#include "cip3output/DocumentBuffer.h"

#include "cip3output/Platform.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace RasterOutput
{
    namespace
    {
        /// A document of a few sheets' administrative data fits the first block. Each block is four times as large as
        /// the one before up to the usual size, or of that size at once where large pages pay.
        constexpr std::size_t FirstBlockSize = std::size_t{64} << 10;
        constexpr std::size_t GrowthFactor = 4;
        /// Large enough that making one costs nothing against filling it. Not larger: while the document is written out,
        /// the file's pages take the place of the block before, so that no more than a block's worth of them is new.
        constexpr std::size_t UsualBlockSize = 2 * Platform::LargePageSize;
        /// A block fits what is asked for this often, if that makes it no larger than the largest: the rest of a block
        /// that fits it no more is lost, and may have been touched already.
        constexpr std::size_t FitsAtLeast = 512;
        constexpr std::size_t LargestBlockSize = std::size_t{64} << 20;
        constexpr std::align_val_t LargeAlignment{Platform::LargePageSize};
        constexpr std::align_val_t SmallAlignment{__STDCPP_DEFAULT_NEW_ALIGNMENT__};
    }

    void DocumentBuffer::Release::operator()(unsigned char* bytes) const noexcept
    {
        ::operator delete(bytes, alignment);
    }

    void DocumentBuffer::Write(std::string_view bytes)
    {
        const std::size_t behindEnd = bytes.size() - std::min(bytes.size(), size - position);
        if (behindEnd == 0)
        {
            Overwrite(bytes);
            return;
        }
        RefuseBeyondLimit(behindEnd);
        unsigned char* const room = Room(behindEnd);
        bytes = Overwrite(bytes);
        std::memcpy(room, bytes.data(), bytes.size());
        Commit(bytes.size());
    }

    unsigned char* DocumentBuffer::Room(std::size_t capacity)
    {
        if (blocks.empty() || blocks.back().capacity - blocks.back().used < capacity)
        {
            AddBlock(capacity);
        }
        Block& block = blocks.back();
        if (block.used + capacity > block.settled)
        {
            SettlePage(block, capacity);
        }
        return block.bytes.get() + block.used;
    }

    void DocumentBuffer::Commit(std::size_t count)
    {
        RefuseBeyondLimit(count);
        if (count != 0)
        {
            blocks.back().used += count;
            size += count;
            position = size;
        }
    }

    void DocumentBuffer::AddBlock(std::size_t capacity)
    {
        std::size_t chosen = FirstBlockSize;
        if (!blocks.empty())
        {
            const std::size_t next = std::min(blocks.back().capacity * GrowthFactor, UsualBlockSize);
            chosen = LargePagePays() ? UsualBlockSize : next;
        }
        const std::size_t forManyRooms = capacity < LargestBlockSize ? capacity * FitsAtLeast : 0;
        chosen = std::max({chosen, capacity, std::min(forManyRooms, LargestBlockSize)});
        const bool isLarge = chosen >= UsualBlockSize;
        const Release release{isLarge ? LargeAlignment : SmallAlignment};
        blocks.reserve(blocks.size() + 1);
        std::unique_ptr<unsigned char[], Release> bytes(
            static_cast<unsigned char*>(::operator new(chosen, release.alignment)), release);
        blocks.push_back({std::move(bytes), chosen, 0, isLarge ? 0 : chosen});
    }

    /// One large page at most, so that room that is asked for and not used takes no memory.
    void DocumentBuffer::SettlePage(Block& block, std::size_t capacity) noexcept
    {
        const std::size_t page = std::max(block.settled, block.used - block.used % Platform::LargePageSize);
        const std::size_t end = page + Platform::LargePageSize;
        if (end > block.capacity)
        {
            block.settled = block.capacity;
        }
        else if (block.used + capacity > page)
        {
            if (LargePagePays())
            {
                largePages.Make(block.bytes.get() + page);
            }
            block.settled = end;
        }
    }

    /// Small pages in place of the first one would cost a tenth of the conversion, so a quarter of it may stay empty. The
    /// others have to be filled.
    bool DocumentBuffer::LargePagePays() const noexcept
    {
        constexpr std::size_t Page = Platform::LargePageSize;
        return expected >= (size < Page ? Page / 4 * 3 : Page);
    }

    void DocumentBuffer::RefuseBeyondLimit(std::size_t extra) const
    {
        if (extra > limit - size)
        {
            throw std::length_error("The document would pass the largest size that its directory can describe");
        }
    }

    std::string_view DocumentBuffer::Overwrite(std::string_view bytes) noexcept
    {
        std::size_t blockBegin = 0;
        for (auto block = blocks.begin(); position != size && !bytes.empty(); ++block)
        {
            if (position < blockBegin + block->used)
            {
                const std::size_t inside = position - blockBegin;
                const std::size_t count = std::min(bytes.size(), block->used - inside);
                std::memcpy(block->bytes.get() + inside, bytes.data(), count);
                bytes.remove_prefix(count);
                position += count;
            }
            blockBegin += block->used;
        }
        return bytes;
    }
}
