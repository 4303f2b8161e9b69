#include "host/Text.h"

#include <gtest/gtest.h>

namespace HostTest
{
    using namespace Host;

    struct Case
    {
        const char* remark;
        std::string text;
        const char* line;
    };

    TEST(OneLine, KeepsWhatATerminalShowsAndSpellsOutTheRest)
    {
        const Case cases[] = {
            {"plain", "Grün 印 \U0001F5A8", "Grün 印 \U0001F5A8"},
            {"control characters", "a\nb\r\x1b[2J\x7f", "a\\x0ab\\x0d\\x1b[2J\\x7f"},
            {"control character of two bytes", "\xC2\x85", "\\xc2\\x85"},
            {"line separator", "\xE2\x80\xA8", "\\xe2\\x80\\xa8"},
            {"ISO 8859-1", "caf\xE9 x", "caf\\xe9 x"},
            {"cut short", "\xE5\x8D", "\\xe5\\x8d"},
            {"longer than needed", "\xC0\xAF", "\\xc0\\xaf"},
            {"surrogate", "\xED\xA0\x80", "\\xed\\xa0\\x80"},
            {"beyond the last code point", "\xF4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"},
            {"zero byte", std::string("a\0b", 3), "a\\x00b"},
        };
        for (const Case& c : cases)
        {
            EXPECT_EQ(OneLine(c.text), c.line) << c.remark;
            EXPECT_EQ(OneLine(OneLine(c.text)), c.line) << c.remark;
        }
    }

    TEST(Shortened, KeepsBeginAndEndAndCutsBetweenCharacters)
    {
        EXPECT_EQ(Shortened("0123456789", 10), "0123456789");
        EXPECT_EQ(Shortened("0123456789abcdef", 11), "012 ... def");
        // Three bytes each: the cut at the fourth byte moves to the third, and the one before the last four to the last three.
        EXPECT_EQ(Shortened("印印印印印", 14), "印 ... 印");
        // What is not UTF-8 is cut where it falls, three bytes off at most.
        EXPECT_EQ(Shortened(std::string(100, '\x80'), 20).size(), 4 + 5 + 4U);
    }
}
