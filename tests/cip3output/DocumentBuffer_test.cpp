// The document's memory: growth over its blocks, overwriting, the limit.
#include "cip3output/DocumentBuffer.h"
#include "tests/cip3output/Bytes.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <stdexcept>
#include <vector>

#include <sys/mman.h>

namespace
{
    struct Advice
    {
        const void* begin;
        std::size_t size;
        int kind;
    };

    /// What the system was advised of, none of which it takes.
    std::vector<Advice> adviceRefused;
}

/// The linker gives the program's calls of madvise to this.
extern "C" int __wrap_madvise(void* begin, std::size_t size, int kind)
{
    adviceRefused.push_back({begin, size, kind});
    errno = EINVAL;
    return -1;
}

namespace CIP3OutputTest
{
    using RasterOutput::DocumentBuffer;

    std::string Content(const DocumentBuffer& document)
    {
        std::string content;
        document.ForEachPiece([&content](std::string_view piece) { content += piece; });
        return content;
    }

    TEST(DocumentBuffer, GrowsOverItsBlocksByWritesOfAnySize)
    {
        DocumentBuffer document;
        std::string expected;
        EXPECT_EQ(Content(document), "");
        for (std::size_t size = 1; expected.size() < 5 * DocumentBuffer::BlockSize; size = size * 3 / 2 + 1)
        {
            const std::string piece = Literal(size);
            document.Write(piece);
            expected += piece;
        }
        // Up to a block's last byte, and across the next block's first.
        const std::string rest(DocumentBuffer::BlockSize - expected.size() % DocumentBuffer::BlockSize, 'r');
        document.Write(rest);
        EXPECT_TRUE(Content(document) == expected + rest);
        document.Write("next");
        expected += rest + "next";
        EXPECT_EQ(document.Size(), expected.size());
        EXPECT_EQ(document.Position(), expected.size());
        EXPECT_TRUE(Content(document) == expected);
    }

    /// Without it, a photo's whole conversion takes 1.4 times as long.
    TEST(DocumentBuffer, EachBlockIsALargePageOrSmallOnesWhereTheSystemHasNone)
    {
        adviceRefused.clear();
        DocumentBuffer document;
        const std::string content = Literal(2 * DocumentBuffer::BlockSize + 1);
        document.Write(content);
        ASSERT_EQ(adviceRefused.size(), 3U);
        for (const Advice& advice : adviceRefused)
        {
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(advice.begin) % DocumentBuffer::BlockSize, 0U);
            EXPECT_EQ(advice.size, DocumentBuffer::BlockSize);
            EXPECT_EQ(advice.kind, MADV_HUGEPAGE);
        }
        EXPECT_TRUE(Content(document) == content);
    }

    TEST(DocumentBuffer, OverwritingChangesNeitherSizeNorTheRest)
    {
        DocumentBuffer document;
        std::string expected = Literal(DocumentBuffer::BlockSize + 1000);
        document.Write(expected);
        // Inside the first block, over its end, and from inside the document to after its end.
        for (const std::size_t position :
             {std::size_t{0}, std::size_t{46}, DocumentBuffer::BlockSize - 6, expected.size() - 10})
        {
            document.Seek(position);
            document.Write("0123456789abcdef");
            expected.replace(position, std::min<std::size_t>(16, expected.size() - position), "0123456789abcdef");
            EXPECT_EQ(document.Position(), position + 16);
        }
        EXPECT_EQ(document.Size(), expected.size());
        EXPECT_TRUE(Content(document) == expected);
    }

    TEST(DocumentBuffer, LimitIsReachedAndNotPassed)
    {
        DocumentBuffer document(10);
        document.Write("01234567");
        EXPECT_THROW(document.Write("890"), std::length_error);
        EXPECT_EQ(document.Position(), 8U);

        document.Write("89");
        EXPECT_THROW(document.Write("a"), std::length_error);

        document.Seek(8);
        EXPECT_THROW(document.Write("xyz"), std::length_error);
        document.Write("xy");
        EXPECT_EQ(Content(document), "01234567xy");
    }
}
