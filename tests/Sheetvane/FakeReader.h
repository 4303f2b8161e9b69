// The TIFF reader and the file library as a test has them: separations by path, without files, each of which can be made
// to fail at any point. Linked in place of the real ones. Every call leaves a word in a log.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace SheetvaneTest
{
    /// One separation, and how reading it goes wrong.
    struct FakeSeparation
    {
        std::int32_t unitsPerInch = 1;
        std::int32_t widthExtent = 1;
        std::uint32_t lineCount = 0;
        std::uint32_t lineLength = 0;
        std::vector<std::string> lines = {}; ///< lines beyond these are white: 255

        enum class Trouble
        {
            None,
            NullReader,
            HeaderFails,
            HeaderCallsFailure, ///< the failure callback
            LineFails
        };
        Trouble trouble = Trouble::None;
        std::uint32_t troubleAtLine = 0;
    };

    struct FakeReader
    {
        std::map<std::string, FakeSeparation> separations; ///< by path; what is not here gives no reader
        bool blocksRunOut = false;
        bool selectionFails = false;
        std::string log;
        int openReaders = 0;
        int openBlocks = 0;

        static FakeReader& Instance();
    };

    /// Begins with a reader without separations, and ends with all that was opened closed.
    class FakeReaderTest : public testing::Test
    {
    protected:
        FakeReaderTest() { fake = FakeReader(); }
        ~FakeReaderTest() override
        {
            EXPECT_EQ(fake.openReaders, 0);
            EXPECT_EQ(fake.openBlocks, 0);
        }

        FakeReader& fake = FakeReader::Instance();
    };
}
