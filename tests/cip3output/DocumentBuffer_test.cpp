// The document's memory: growth over its blocks, overwriting, the limit.
#include "cip3output/DocumentBuffer.h"
#include "tests/cip3output/Bytes.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <stdexcept>

namespace PpfTest
{
    using RasterOutput::DocumentBuffer;

    /// All of the document, which is empty afterwards.
    std::string Drained(DocumentBuffer& document)
    {
        std::string content;
        document.Drain([&content](const unsigned char* begin, std::size_t size)
                       { content.append(reinterpret_cast<const char*>(begin), size); });
        return content;
    }

    TEST(DocumentBuffer, GrowthMovesNoByteThatIsWritten)
    {
        // Nothing is expected, one large page's worth, and more than comes.
        for (const std::size_t told : {0U, 1600000U, 40000000U})
        {
            SCOPED_TRACE(told);
            DocumentBuffer document;
            document.Expect(told);
            unsigned char* const first = document.Room(5);
            std::string expected = "first";
            std::copy(expected.begin(), expected.end(), first);
            document.Commit(expected.size());
            for (std::size_t size = 1; expected.size() < 30000000; size = size * 3 / 2 + 1)
            {
                const std::string piece = Literal(size);
                document.Write(piece);
                expected += piece;
            }
            EXPECT_EQ(document.Size(), expected.size());
            EXPECT_TRUE(std::equal(expected.begin(), expected.begin() + 5, first));
            EXPECT_TRUE(Drained(document) == expected);
            EXPECT_EQ(document.Size(), 0U);
            document.Write("again");
            EXPECT_EQ(Drained(document), "again");
        }
    }

    TEST(DocumentBuffer, OverwritingChangesNeitherSizeNorTheRest)
    {
        DocumentBuffer document;
        std::string expected;
        for (const std::size_t size : {10000U, 100000U, 1000000U})
        {
            document.Write(Literal(size));
            expected += Literal(size);
        }
        // Inside the first block, over its end, and from inside to behind the end.
        for (const std::size_t position : {std::size_t{0}, std::size_t{46}, std::size_t{9990}, expected.size() - 10})
        {
            document.Seek(position);
            document.Write("0123456789abcdef");
            expected.replace(position, std::min<std::size_t>(16, expected.size() - position), "0123456789abcdef");
            EXPECT_EQ(document.Position(), position + 16);
        }
        EXPECT_EQ(document.Size(), expected.size());
        EXPECT_TRUE(Drained(document) == expected);
    }

    TEST(DocumentBuffer, RoomIsUsedAsFarAsItIsCommitted)
    {
        DocumentBuffer document;
        for (const std::size_t capacity : {0U, 1U, 70000U, 5000000U, 10U})
        {
            unsigned char* const room = document.Room(capacity);
            std::fill(room, room + capacity, 'x');
            document.Commit(capacity / 2);
        }
        EXPECT_EQ(document.Size(), 35000U + 2500000U + 5U);
        EXPECT_TRUE(Drained(document) == std::string(35000 + 2500000 + 5, 'x'));
    }

    TEST(DocumentBuffer, LimitIsReachedAndNotPassed)
    {
        DocumentBuffer document(10);
        document.Write("01234567");
        EXPECT_THROW(document.Write("890"), std::length_error);
        EXPECT_EQ(document.Position(), 8U);

        document.Room(100);
        EXPECT_THROW(document.Commit(3), std::length_error);
        document.Write("89");
        EXPECT_THROW(document.Write("a"), std::length_error);

        document.Seek(8);
        EXPECT_THROW(document.Write("xyz"), std::length_error);
        document.Write("xy");
        EXPECT_EQ(Drained(document), "01234567xy");
    }
}
