#include "job/EscapedName.h"

#include <gtest/gtest.h>

namespace JobsTest
{
    using Jobs::EscapedName;

    struct Case
    {
        const char* remark;
        const char* name;
        const char* escaped;
    };

    constexpr Case Cases[] = {
        {"nothing to do", "Sheet 1", "Sheet 1"},
        {"empty", "", ""},
        {"balanced", "Cover (a(b)) ()", "Cover (a(b)) ()"},
        {"one left open", "a(b", "a\\(b"},
        {"one too many closed", "a)b", "a\\)b"},
        {"as many of each, but closed first: all of them", ")(", "\\)\\("},
        {"one unbalanced escapes the balanced ones too", "(a)(", "\\(a\\)\\("},
        {"backslashes alone", "a\\b\\\\", "a\\\\b\\\\\\\\"},
        {"a backslash in a name does not escape its parenthesis", "\\(", "\\\\\\("},
        {"a backslash between balanced ones", "(\\)", "(\\\\)"},
        {"other bytes stay", "\xC3\xA9\xFF\n\"<>", "\xC3\xA9\xFF\n\"<>"},
    };

    TEST(EscapedName, GivesNameBackToPostScript)
    {
        for (const Case& c : Cases)
        {
            EXPECT_EQ(EscapedName(c.name), c.escaped) << c.remark;
        }
    }
}
