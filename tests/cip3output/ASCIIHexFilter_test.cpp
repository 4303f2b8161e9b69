// The digits of ASCIIHex data.
#include "cip3output/ASCIIHexFilter.h"
#include "tests/cip3output/Bytes.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace CIP3OutputTest
{
    using RasterOutput::ASCIIHexFilter;

    TEST(ASCIIHexFilter, EveryByteHasItsTwoDigits)
    {
        std::string input;
        std::string expected;
        for (unsigned byte = 0; byte < 256; ++byte)
        {
            char digits[3];
            std::snprintf(digits, sizeof digits, "%02x", byte);
            input.push_back(static_cast<char>(byte));
            expected += digits;
        }
        ASCIIHexFilter filter;
        EXPECT_EQ(Filtered(filter, input), expected);
        EXPECT_EQ(Filtered(filter, ""), "");
        EXPECT_EQ(Filtered(filter, Hex("80")), "80");
        EXPECT_EQ(Finished(filter), ">");
    }
}
