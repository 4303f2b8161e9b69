// The characters of ASCII85 data: groups within a call, across calls, and the last one.
#include "cip3output/ASCII85Filter.h"
#include "tests/cip3output/Bytes.h"
#include "tests/cip3output/Decoders.h"

#include <gtest/gtest.h>

namespace PpfTest
{
    using RasterOutput::ASCII85Filter;

    std::string Finished(ASCII85Filter& filter)
    {
        const auto end = filter.Finish();
        return std::string(end.begin, end.end);
    }

    TEST(ASCII85Filter, CallByCall)
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
            EXPECT_EQ(Finished(filter), c.end) << c.remark;
            EXPECT_EQ(filter.count, 0U) << c.remark;
        }
    }

    TEST(ASCII85Filter, CallsOfAnySizeMakeOneStream)
    {
        for (std::size_t size = 1; size < 40; ++size)
        {
            const std::string bytes = Times(3, Literal(size) + std::string(size, '\0'));
            ASCII85Filter filter;
            std::string text;
            for (std::size_t i = 0; i < bytes.size(); i += size)
            {
                text += Filtered(filter, bytes.substr(i, size));
            }
            text += Finished(filter);
            EXPECT_EQ(ASCII85Decoded(text), bytes) << "calls of " << size;
        }
    }

    TEST(ASCII85Filter, RoomSufficesForAGroupThatOneByteCompletes)
    {
        ASCII85Filter filter;
        Filtered(filter, Hex("01 02 03"));
        EXPECT_EQ(filter.RoomFor(1), 5U);
        EXPECT_EQ(Filtered(filter, Hex("04")), "!<N?+");
        EXPECT_GE(filter.output.size(), 5U);
    }
}
