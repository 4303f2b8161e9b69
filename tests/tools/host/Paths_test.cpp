#include "host/Paths.h"

#include <gtest/gtest.h>

namespace HostTest
{
    using namespace Host;

    TEST(Paths, FolderAndNameAreSplitAtTheLastSlash)
    {
        EXPECT_EQ(FolderOf("/a/b") + '|' + NameIn("/a/b"), "/a|b");
        EXPECT_EQ(FolderOf("/b") + '|' + NameIn("/b"), "/|b");
        EXPECT_EQ(FolderOf("b") + '|' + NameIn("b"), ".|b");
        EXPECT_EQ(FolderOf("a/") + '|' + NameIn("a/"), "a|");
    }

    TEST(Paths, RelativeNameStandsInTheFolder)
    {
        EXPECT_EQ(AbsolutePath("b", "/a"), "/a/b");
        EXPECT_EQ(AbsolutePath("b", "/"), "/b");
        EXPECT_EQ(AbsolutePath("/b", "/a"), "/b");
    }
}
