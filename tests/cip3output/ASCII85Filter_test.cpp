// The characters of ASCII85 data: groups within a call, across calls, and the last one.
#include "cip3output/ASCII85Filter.h"
#include "tests/cip3output/Bytes.h"
#include "tests/cip3output/PlainLoops.h"
#include "tests/support/KernelTargets.h"

#include <gtest/gtest.h>

namespace CIP3OutputTest
{
    using RasterOutput::ASCII85Filter;

    class ASCII85FilterTest : public TestSupport::KernelTest
    {
    };

    TEST_P(ASCII85FilterTest, CallByCall)
    {
        const struct
        {
            std::vector<std::string> inputs;
            std::vector<std::string> outputs;
            std::string end;
            const char* remark;
        } cases[] = {
            {{}, {}, "", "nothing"},
            {{""}, {""}, "", "an empty line"},
            {{Hex("00 00 00 00")}, {"z"}, "", "zero group"},
            {{Hex("00 00"), Hex("00 00")}, {"", "z"}, "", "zero group across calls"},
            {{Hex("FF FF FF FF")}, {"s8W-!"}, "", "largest group"},
            {{Hex("01 02 03 04")}, {"!<N?+"}, "", "most significant byte first"},
            {{Hex("00 00 00 01")}, {"!!!!\""}, "", "zeros in front are digits"},
            {{Hex("00")}, {""}, "!!", "last group of one zero"},
            {{Hex("00 00")}, {""}, "!!!", "last group of two zeros"},
            {{Hex("00 00 00")}, {""}, "!!!!", "last group of three zeros"},
            {{Hex("80")}, {""}, "J,", "last group of the end of run-length data"},
            {{Hex("01 02 03"), Hex("04 05 06")}, {"", "!<N?+"}, "\"U4", "lines of three: two bytes carried on"},
            {{Hex("FD FF"), Hex("FF 00 01 FF 5F"), Hex("80")},
             {"", "rVult", "!WQMW"},
             "",
             "groups that one byte completes"},
            {{Hex("01"), Hex("02"), "", Hex("03"), Hex("04")}, {"", "", "", "", "!<N?+"}, "", "byte by byte"},
        };
        for (const auto& c : cases)
        {
            ASCII85Filter filter;
            for (std::size_t i = 0; i < c.inputs.size(); ++i)
            {
                EXPECT_EQ(Filtered(filter, c.inputs[i]), c.outputs[i]) << c.remark << ", call " << i;
            }
            EXPECT_EQ(Finished(filter), c.end + std::string("~>")) << c.remark;
            EXPECT_EQ(Finished(filter), "~>") << c.remark << ", and nothing is left";
        }
    }

    TEST_P(ASCII85FilterTest, CallsOfAnySizeMakeOneStream)
    {
        for (std::size_t size = 1; size < 40; ++size)
        {
            const std::string bytes = Times(4, Literal(size) + std::string(size, '\0'));
            ASCII85Filter filter;
            std::string text;
            for (std::size_t i = 0; i < bytes.size(); i += size)
            {
                text += Filtered(filter, bytes.substr(i, size));
            }
            EXPECT_EQ(text + Finished(filter), PlainLoops::ASCII85(bytes) + "~>") << "calls of " << size;
        }
    }

    INSTANTIATE_TEST_SUITE_P(
        , ASCII85FilterTest, testing::ValuesIn(TestSupport::TargetsOfThisMachine()), TestSupport::TargetName);
}
