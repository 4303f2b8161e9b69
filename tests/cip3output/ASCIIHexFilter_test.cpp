// The digits of ASCIIHex data.
#include "cip3output/ASCIIHexFilter.h"
#include "tests/cip3output/Bytes.h"
#include "tests/cip3output/PlainLoops.h"

#include <gtest/gtest.h>

#include <string>

namespace CIP3OutputTest
{
    using RasterOutput::ASCIIHexFilter;

    TEST(ASCIIHexFilter, EveryByteHasItsTwoDigits)
    {
        std::string input;
        for (unsigned byte = 0; byte < 256; ++byte)
        {
            input.push_back(static_cast<char>(byte));
        }
        ASCIIHexFilter filter;
        EXPECT_EQ(Filtered(filter, input), PlainLoops::ASCIIHex(input));
        EXPECT_EQ(Filtered(filter, ""), "");
        EXPECT_EQ(Filtered(filter, Hex("80")), "80");
        EXPECT_EQ(Finished(filter), ">");
    }
}
