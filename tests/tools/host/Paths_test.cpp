#include "host/Failure.h"
#include "host/Paths.h"
#include "tests/support/Folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace HostTest
{
    using namespace Host;
    namespace fs = std::filesystem;

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

    TEST(Paths, EveryMissingFolderIsMade)
    {
        const TestSupport::Folder folder;
        fs::create_directory(folder / "there");
        for (const char* const name : {"there", "a", "b//c/", "there/d/e"})
        {
            MakeFolders(folder / name, false);
            EXPECT_TRUE(fs::is_directory(folder / name)) << name;
        }
        folder.Write("file", "");
        EXPECT_THROW(MakeFolders(folder / "file/f", false), Failure);
    }
}
