#include "host/Failure.h"
#include "host/Output.h"
#include "tests/support/Folder.h"
#include "tests/support/SystemFaults.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace HostTest
{
    using namespace Host;
    using ::testing::ElementsAre;
    using ::testing::MatchesRegex;
    namespace fs = std::filesystem;

    class OutputTest : public ::testing::Test
    {
    protected:
        /// Writes and publishes the output at `place`.
        static void Publish(const std::string& place, const std::string& bytes)
        {
            Output output(place, Durability::Scratch);
            output.Stream() << bytes;
            output.Publish();
        }

        TestSupport::Folder folder;
    };

    TEST_F(OutputTest, FileHasAHiddenNameBesideItsPlaceUntilItIsPublished)
    {
        Output output(folder / "out.ppf", Durability::Scratch);
        output.Stream() << "bytes";
        EXPECT_THAT(folder.Names(), ElementsAre(MatchesRegex("\\.sheetvane-[0-9a-f]{16}")));

        output.Publish();
        EXPECT_THAT(folder.Names(), ElementsAre("out.ppf"));
        EXPECT_EQ(folder.Read("out.ppf"), "bytes");
    }

    TEST_F(OutputTest, FileAndThenItsNameAreOnTheDiskUnlessItIsScratch)
    {
        TestSupport::TakeCalls();
        Output(folder / "made/too/out.ppf", Durability::OnDisk).Publish();
        EXPECT_THAT(
            TestSupport::TakeCalls(), ElementsAre(
                                          "fsync of a folder", "fsync of a folder", // those that take "made" and "too"
                                          "fsync of a file", "rename", "fsync of a folder"));
        Output(folder / "made/again/out.ppf", Durability::Scratch).Publish();
        EXPECT_THAT(TestSupport::TakeCalls(), ElementsAre("rename"));
    }

    TEST_F(OutputTest, PathLeadsToTheDraftWhateverTakesItsName)
    {
        folder.Write("victim", "untouched");
        Output output(folder / "out.ppf", Durability::Scratch);
        const std::string name = folder.Names().front();
        fs::remove(folder / name);
        fs::create_symlink("victim", folder / name);
        std::ofstream(output.Path()) << "bytes";
        EXPECT_EQ(folder.Read("victim"), "untouched");
        char byte = 0;
        EXPECT_EQ(pread(output.File(), &byte, 1, 0), 1);
        EXPECT_EQ(byte, 'b');
    }

    TEST_F(OutputTest, NewFileHasThePermissionsThatTheMaskLeaves)
    {
        const mode_t before = umask(027);
        Publish(folder / "out.ppf", "bytes");
        umask(before);
        EXPECT_EQ(fs::status(folder / "out.ppf").permissions(), fs::perms(0640));
    }

    TEST_F(OutputTest, ReplacingFileTakesOverPermissionsAndIsNeverOpenToMore)
    {
        const std::string path = folder.Write("out.ppf", "older");
        fs::permissions(path, fs::perms(0664));
        Output output(path, Durability::Scratch);
        EXPECT_EQ(fs::status(output.Path()).permissions(), fs::perms(0600));

        output.Publish();
        EXPECT_EQ(fs::status(path).permissions(), fs::perms(0664));
        EXPECT_EQ(folder.Read("out.ppf"), "");
    }

    TEST_F(OutputTest, LinkStaysAndItsTargetIsWritten)
    {
        fs::create_directory(folder / "elsewhere");
        fs::create_symlink("elsewhere/target", folder / "second");
        fs::create_symlink("second", folder / "first");

        for (const std::string bytes : {"made through a link to nothing", "replaced"})
        {
            Publish(folder / "first", bytes);
            EXPECT_TRUE(fs::is_symlink(folder / "first"));
            EXPECT_TRUE(fs::is_symlink(folder / "second"));
            EXPECT_EQ(folder.Read("elsewhere/target"), bytes);
        }
        EXPECT_THAT(folder.Names(), ElementsAre("elsewhere", "first", "second"));
    }

    TEST_F(OutputTest, NameOfFullLengthIsWritten)
    {
        const std::string name(255, 'x');
        Publish(folder / name, "bytes");
        EXPECT_THAT(folder.Names(), ElementsAre(name));
    }
}
