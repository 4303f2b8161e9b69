#include "tests/tools/tiff2ppf/Folder.h"
#include "tiff2ppf/Failure.h"
#include "tiff2ppf/Output.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <future>

#include <sys/stat.h>

namespace
{
    using namespace Tiff2Ppf;
    using ::testing::ElementsAre;
    using ::testing::HasSubstr;
    using ::testing::StartsWith;
    namespace fs = std::filesystem;

    class OutputTest : public ::testing::Test
    {
    protected:
        /// Does what the library does with a work file.
        static void WriteWork(const Output& output, const std::string& bytes)
        {
            std::ofstream(output.Work().Path(), std::ios::binary) << bytes;
        }

        /// Writes and publishes the output `name`, an absolute path.
        static void Publish(const std::string& name, const std::string& bytes)
        {
            const std::unique_ptr<Output> output = OpenOutput(name);
            WriteWork(*output, bytes);
            output->Publish();
        }

        static mode_t ModeOf(const std::string& path)
        {
            struct stat status = {};
            EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
            return status.st_mode & 07777;
        }

        Tiff2PpfTests::Folder folder;
    };

    TEST_F(OutputTest, FileHasAHiddenNameBesideItsPlaceUntilItIsPublished)
    {
        const std::unique_ptr<Output> output = OpenOutput(folder / "out.ppf");
        WriteWork(*output, "bytes");
        EXPECT_THAT(folder.Names(), ElementsAre(StartsWith(".")));

        output->Publish();
        EXPECT_THAT(folder.Names(), ElementsAre("out.ppf"));
        EXPECT_EQ(folder.Read("out.ppf"), "bytes");
    }

    TEST_F(OutputTest, FileThatIsNotPublishedLeavesTheOlderOne)
    {
        folder.Write("out.ppf", "older");
        WriteWork(*OpenOutput(folder / "out.ppf"), "bytes");
        EXPECT_THAT(folder.Names(), ElementsAre("out.ppf"));
        EXPECT_EQ(folder.Read("out.ppf"), "older");
    }

    TEST_F(OutputTest, NewFileHasThePermissionsThatTheMaskLeaves)
    {
        const mode_t before = umask(027);
        Publish(folder / "out.ppf", "bytes");
        umask(before);
        EXPECT_EQ(ModeOf(folder / "out.ppf"), 0640U);
    }

    TEST_F(OutputTest, ReplacingFileTakesOverPermissionsAndIsNeverOpenToMore)
    {
        const std::string path = folder.Write("out.ppf", "older");
        fs::permissions(path, fs::perms(0604));
        const std::unique_ptr<Output> output = OpenOutput(path);
        WriteWork(*output, "bytes");
        EXPECT_EQ(ModeOf(output->Work().Path()), 0600U);

        output->Publish();
        EXPECT_EQ(ModeOf(path), 0604U);
        EXPECT_EQ(folder.Read("out.ppf"), "bytes");
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

    TEST_F(OutputTest, WhatCanBeNoFileIsRefusedAtOnce)
    {
        fs::create_symlink("circle", folder / "circle");
        const auto faultOf = [&](const std::string& name) -> std::string
        {
            try
            {
                OpenOutput(folder / name);
            }
            catch (const ConversionError& error)
            {
                return error.what();
            }
            return "no fault";
        };
        EXPECT_EQ(faultOf("."), "Could not open CIP3 file: " + (folder / ".") + ": Is a directory");
        EXPECT_THAT(faultOf("new/"), HasSubstr("Is a directory"));
        EXPECT_THAT(faultOf(std::string(256, 'x')), HasSubstr("File name too long"));
        EXPECT_THAT(faultOf("circle"), HasSubstr("Too many levels of symbolic links"));
        EXPECT_EQ(faultOf("no/such/folder/out.ppf"), "no fault");
    }

    TEST_F(OutputTest, PipeGetsTheBytesOfTheFinishedFile)
    {
        const std::string pipe = folder / "pipe";
        ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
        std::future<std::string> received = std::async(std::launch::async, [&] { return folder.Read("pipe"); });
        const std::string bytes(200000, 'x');
        Publish(pipe, bytes);
        EXPECT_TRUE(received.get() == bytes);
        EXPECT_THAT(folder.Names(), ElementsAre("pipe"));
    }

    TEST_F(OutputTest, FailingWriteToADeviceIsReported)
    {
        try
        {
            Publish("/dev/full", "bytes");
            FAIL() << "the device took it";
        }
        catch (const ConversionError& error)
        {
            EXPECT_STREQ(error.what(), "the output cannot be written: /dev/full: No space left on device");
        }
    }

    TEST_F(OutputTest, ObstacleIsFoundByTrying)
    {
        folder.Write("file", "");
        EXPECT_EQ(OpenOutput(folder / "made/out.ppf")->ObstacleToWriting(), "");
        EXPECT_EQ(OpenOutput(folder / "file/out.ppf")->ObstacleToWriting(), "Not a directory");
        EXPECT_TRUE(fs::is_empty(folder / "made"));
    }
}
