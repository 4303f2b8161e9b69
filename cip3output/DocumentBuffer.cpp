// Growth of the document and writing into its blocks.
#include "cip3output/DocumentBuffer.h"

#include "cip3output/Platform.h"

#include <cstring>
#include <new>
#include <stdexcept>

namespace RasterOutput
{
    namespace
    {
        constexpr std::align_val_t BlockAlignment{DocumentBuffer::BlockSize};
    }

    void DocumentBuffer::Release::operator()(char* block) const noexcept
    {
        ::operator delete(block, BlockAlignment);
    }

    DocumentBuffer::Block DocumentBuffer::MakeBlock()
    {
        Block block(static_cast<char*>(::operator new(BlockSize, BlockAlignment)));
        Platform::AdviseLargePages(block.get(), BlockSize);
        return block;
    }

    void DocumentBuffer::Write(std::string_view bytes)
    {
        if (bytes.size() > limit - position)
        {
            throw std::length_error("The document would pass the largest size that its directory can describe");
        }
        while (blocks.size() * BlockSize < position + bytes.size())
        {
            blocks.push_back(MakeBlock());
        }
        while (!bytes.empty())
        {
            const std::size_t inside = position % BlockSize;
            const std::size_t count = std::min(bytes.size(), BlockSize - inside);
            std::memcpy(blocks[position / BlockSize].get() + inside, bytes.data(), count);
            bytes.remove_prefix(count);
            position += count;
        }
        size = std::max(size, position);
    }
}
