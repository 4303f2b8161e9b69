#include "host/Failure.h"
#include "host/Output.h"
#include "tests/support/Failures.h"
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
    using ::testing::HasSubstr;
    using ::testing::MatchesRegex;
    using ::testing::StartsWith;
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

    class OutputFailuresTest : public ::testing::Test
    {
    protected:
        OutputFailuresTest() { path = folder.Write("out.ppf", "older"); }

        /// What is said of the output at `place`, from its opening to its publishing.
        static std::string FailureAt(const std::string& place)
        {
            return TestSupport::FailureOf<Failure>(
                [&]
                {
                    Output output(place, Durability::OnDisk);
                    output.Stream() << "bytes";
                    output.Publish();
                });
        }

        /// The same in the folder, less what every text begins with.
        std::string FailureOf(const std::string& name) const
        {
            const std::string begin = "the output cannot be written: " + (folder / name) + ": ";
            const std::string text = FailureAt(folder / name);
            EXPECT_THAT(text, StartsWith(begin));
            return text.substr(std::min(begin.size(), text.size()));
        }

        TestSupport::Folder folder;
        std::string path; ///< of an older file
    };

    TEST_F(OutputFailuresTest, OlderFileStaysUntilTheNewOneIsInItsPlace)
    {
        const struct
        {
            const char* function;
            int nth;
            int error;
            std::string text;
            const char* left = "older";
        } cases[] = {
            {"open", 1, EMFILE, "no file can be made in the folder " + folder.Path() + ": Too many open files"},
            {"getentropy", 1, ENOSYS,
             "the system has no random numbers for the name of a file: Function not implemented"},
            {"openat", 1, EDQUOT, "no file can be made in the folder " + folder.Path() + ": Disk quota exceeded"},
            {"fchmod", 1, EPERM, "the permissions cannot be kept: Operation not permitted"},
            {"fsync", 1, EIO, "the file cannot be brought to the disk: Input/output error"},
            {"renameat", 1, EBUSY, "the file is good but cannot be put in its place: Device or resource busy"},
            {"fsync", 2, EIO,
             "the file is in its place, but its name cannot be brought to the disk: Input/output error", "bytes"},
        };
        for (const auto& c : cases)
        {
            const TestSupport::SystemFault fault(c.function, c.error, c.nth);
            EXPECT_EQ(FailureOf("out.ppf"), c.text) << c.function;
            EXPECT_THAT(folder.Names(), ElementsAre("out.ppf")) << c.function;
            EXPECT_EQ(folder.Read("out.ppf"), c.left) << c.function;
        }
    }

    TEST_F(OutputFailuresTest, WriteThatFailsIsReported)
    {
        const TestSupport::SystemFault fault("write", ENOSPC);
        EXPECT_EQ(FailureAt(path), path + " cannot be written: No space left on device");
        EXPECT_THAT(folder.Names(), ElementsAre("out.ppf"));
        EXPECT_EQ(folder.Read("out.ppf"), "older");
    }

    TEST_F(OutputFailuresTest, CloseThatLosesBytesIsReported)
    {
        Output output(path, Durability::Scratch);
        const TestSupport::SystemFault fault("close", EIO);
        EXPECT_THAT(
            TestSupport::FailureOf<Failure>([&] { output.Publish(); }),
            HasSubstr(": the file cannot be written: Input/output error"));
        EXPECT_EQ(folder.Read("out.ppf"), "older");
    }

    TEST_F(OutputFailuresTest, FolderOfANetworkThatHasNothingToSyncIsNoFailure)
    {
        const TestSupport::SystemFault fault("fsync", EINVAL, 2);
        EXPECT_EQ(FailureAt(path), "no failure");
    }

    TEST_F(OutputFailuresTest, SpaceThatCannotBeReservedForScratchIsNoFailure)
    {
        Output output(path, Durability::Scratch);
        output.Stream() << "bytes";
        const TestSupport::SystemFault fault("fallocate", EOPNOTSUPP);
        output.Publish();
        EXPECT_TRUE(fault.HasHappened());
        EXPECT_EQ(folder.Read("out.ppf"), "bytes");
    }

    TEST_F(OutputFailuresTest, RightsOfAGroupThatCannotBeKeptAreDropped)
    {
        fs::permissions(path, fs::perms(0664));
        const TestSupport::SystemFault fault("fchown", EPERM, 2);
        EXPECT_EQ(FailureAt(path), "no failure");
        EXPECT_EQ(fs::status(path).permissions(), fs::perms(0604));
    }

    TEST_F(OutputFailuresTest, WhatCanBeNoFileIsRefusedAtOnce)
    {
        fs::create_symlink("circle", folder / "circle");
        EXPECT_EQ(FailureOf("."), "Is a directory");
        EXPECT_EQ(FailureOf("new/"), "Is a directory");
        EXPECT_EQ(FailureOf(std::string(256, 'x')), "File name too long");
        EXPECT_EQ(FailureOf("circle"), "Too many levels of symbolic links");
        EXPECT_EQ(FailureOf("out.ppf/out.ppf"), "Not a directory");
        EXPECT_THAT(folder.Names(), ElementsAre("circle", "out.ppf"));
    }

    TEST_F(OutputFailuresTest, FolderThatCannotBeMadeIsNamed)
    {
        const TestSupport::SystemFault fault("mkdir", EROFS, 2);
        EXPECT_EQ(
            FailureOf("made/not/out.ppf"),
            "the folder " + (folder / "made/not") + " cannot be made: Read-only file system");
    }

    TEST_F(OutputFailuresTest, FullDeviceIsReported)
    {
        EXPECT_EQ(
            FailureAt("/dev/full"),
            "the output cannot be written: /dev/full: No space left on device; what was written is "
            "not whole");
    }

    TEST_F(OutputFailuresTest, TemporaryFileThatEndsEarlyIsReported)
    {
        Output output("/dev/null", Durability::OnDisk);
        output.Stream() << "0123456789" << std::flush;
        for (const int error : {TestSupport::SystemFault::EndOfFile, EIO})
        {
            const TestSupport::SystemFault fault("read", error);
            const std::string why = error == EIO ? "Input/output error" : "it has become shorter";
            EXPECT_EQ(
                TestSupport::FailureOf<Failure>([&] { output.Publish(); }),
                "the output cannot be written: /dev/null: the temporary file cannot be read: " + why +
                    "; what was written is not whole");
        }
    }
}
