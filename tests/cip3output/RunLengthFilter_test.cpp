// The tokens of run-length data, by hand; kernels/RunLength_test.cpp has them for any line.
#include "cip3output/RunLengthFilter.h"
#include "tests/cip3output/Bytes.h"
#include "tests/support/KernelTargets.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace CIP3OutputTest
{
    using RasterOutput::RunLengthFilter;

    /// On every target, as the tokens are the kernel's.
    class RunLengthFilterTest : public TestSupport::KernelTest
    {
    };

    TEST_P(RunLengthFilterTest, Boundaries)
    {
        const struct
        {
            std::string input;
            std::string output;
            const char* remark;
        } cases[] = {
            {"", "", "nothing"},
            {Hex("41"), Hex("00 41"), "one byte"},
            {Hex("41 42 43"), Hex("02 41 42 43"), "literal alone"},
            {Hex("FF FF FF FF"), Hex("FD FF"), "run alone"},
            {Hex("00 00 FF 7F"), Hex("FF 00 01 FF 7F"), "literal ends with the line"},
            {Hex("41 42 42"), Hex("00 41 FF 42"), "two equal bytes end a literal, and the line"},
            {Hex("41 42 42 43"), Hex("00 41 FF 42 00 43"), "pair inside a literal"},
            {Hex("41 41 42 43 43"), Hex("FF 41 00 42 FF 43"), "literal of one between runs"},
            {Hex("41 41 42 42"), Hex("FF 41 FF 42"), "run after run"},
            {Times(127, "x"), Hex("82 78"), "run one short of a token"},
            {Times(128, "x"), Hex("81 78"), "run of a whole token"},
            {Times(129, "x"), Hex("81 78 00 78"), "rest of one is a literal"},
            {Times(130, "x"), Hex("81 78 FF 78"), "rest of two is a run"},
            {Times(129, "x") + "y", Hex("81 78 00 78 00 79"), "which the next literal does not join"},
            {Times(257, "x"), Hex("81 78 81 78 00 78"), "two tokens and one"},
            {Times(64, "x"), Hex("C1 78"), "run of 64"},
            {Literal(127), Hex("7E") + Literal(127), "literal one short of a token"},
            {Literal(128), Hex("7F") + Literal(128), "literal of a whole token"},
            {Literal(129), Hex("7F") + Literal(128) + Hex("00 80"), "literal of a token and one"},
            {Literal(300),
             Hex("7F") + Literal(128) + Hex("7F") + Literal(256).substr(128) + Hex("2B") + Literal(300).substr(256),
             "literal of two tokens and 44"},
            {Literal(128) + "xx", Hex("7F") + Literal(128) + Hex("FF 78"), "pair after a whole literal token"},
        };
        RunLengthFilter filter;
        for (const auto& c : cases)
        {
            EXPECT_EQ(Filtered(filter, c.input), c.output) << c.remark;
        }
    }

    TEST_P(RunLengthFilterTest, RunsDoNotCrossCalls)
    {
        RunLengthFilter filter;
        EXPECT_EQ(Filtered(filter, Times(64, "x")), Hex("C1 78"));
        EXPECT_EQ(Filtered(filter, Times(64, "x")), Hex("C1 78"));
    }

    INSTANTIATE_TEST_SUITE_P(
        , RunLengthFilterTest, testing::ValuesIn(TestSupport::TargetsOfThisMachine()), TestSupport::TargetName);

    TEST(FilterOutput, GrowsToTwiceTheInputAndNeverShrinks)
    {
        RasterOutput::DataRefInstance output;
        RasterOutput::GrowFilterOutput(output, 100);
        EXPECT_EQ(output.size(), 200U);
        const unsigned char* const buffer = output.begin;
        RasterOutput::GrowFilterOutput(output, 7, 200);
        EXPECT_EQ(output.begin, buffer);
        RasterOutput::GrowFilterOutput(output, 7, 201);
        EXPECT_EQ(output.size(), 201U);
    }

    TEST(FilterOutput, LineBeyondTheLargestBufferIsRefused)
    {
        RasterOutput::DataRefInstance output;
        EXPECT_THROW(RasterOutput::GrowFilterOutput(output, std::size_t{1} << 31), std::length_error);
        EXPECT_EQ(output.size(), 0U);
    }
}
