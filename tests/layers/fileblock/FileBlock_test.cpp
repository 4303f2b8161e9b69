// The block operations on real files, sound and odd, and on a system that fails.
#include "tests/layers/fileblock/SystemFaults.h"

#include <FileBlockLib.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace
{
    namespace fs = std::filesystem;

    /// A folder with files of its own, and a block that is open on none of them yet.
    class FileBlockTest : public testing::Test
    {
    protected:
        FileBlockTest()
            : openBefore(OpenFiles())
            , folder(fs::temp_directory_path() / ("fileblock" + std::to_string(::getpid())))
        {
            fs::create_directory(folder);
            block = FileBlockAlloc(0, "STR,SEQ");
        }
        ~FileBlockTest() override
        {
            Faults() = {};
            FileBlockFree(block);
            EXPECT_EQ(OpenFiles(), openBefore);
            fs::remove_all(folder);
        }

        std::string Path(const std::string& name) const { return (folder / name).string(); }
        void Write(const std::string& name, const std::string& bytes) const { std::ofstream(folder / name) << bytes; }
        std::int32_t Open(const std::string& name) { return FileBlockOpen(block, Path(name).c_str(), ".tif", 0); }
        std::string Read(std::uint32_t size)
        {
            std::string bytes(size, '\0');
            const std::int64_t count = FileBlockRead(block, bytes.data(), size);
            return count < 0 ? "error" : bytes.substr(0, static_cast<std::size_t>(count));
        }

        int openBefore;
        fs::path folder;
        FileBlock block;
    };
}

TEST_F(FileBlockTest, ReadsFromAnyPositionUpToTheEnd)
{
    Write("a.tif", "0123456789");
    ASSERT_EQ(Open("a.tif"), 0);
    EXPECT_EQ(FileBlockProblem(block), "");
    EXPECT_EQ(Read(3), "012");
    EXPECT_EQ(Read(3), "345");
    EXPECT_EQ(FileBlockSeek(block, 8), 2);
    EXPECT_EQ(Read(5), "89");
    EXPECT_EQ(Read(5), "");
    EXPECT_EQ(FileBlockSeek(block, 10), 0);
    EXPECT_EQ(FileBlockSeek(block, 0xffffffff), 0);
    EXPECT_EQ(Read(5), "");
    EXPECT_EQ(FileBlockSeek(block, 0), 10);
    fs::resize_file(folder / "a.tif", 4);
    EXPECT_EQ(FileBlockSeek(block, 1), 3);
    EXPECT_EQ(Read(9), "123");
    EXPECT_EQ(FileBlockClose(block), 0);
}

TEST_F(FileBlockTest, NameWithoutExtensionTakesTheDefaultOne)
{
    Write("plain", "plain");
    ASSERT_EQ(Open("plain"), 0);
    EXPECT_EQ(Read(9), "plain");
    Write("plain.tif", "extended");
    ASSERT_EQ(Open("plain"), 0);
    EXPECT_EQ(Read(9), "extended");
    EXPECT_EQ(FileBlockName(block), Path("plain.tif"));

    Write("other.dat", "other");
    Write("other.dat.tif", "wrong");
    ASSERT_EQ(Open("other.dat"), 0);
    EXPECT_EQ(Read(9), "other");
    // The point of a folder is no extension, nor is the first of a hidden file.
    fs::create_directory(folder / "d.x");
    Write("d.x/.hidden.tif", "hidden");
    ASSERT_EQ(Open("d.x/.hidden"), 0);
    EXPECT_EQ(Read(9), "hidden");
    // Names are bytes, and as long as the system allows.
    const std::string longest(255, '\xe9');
    Write(longest, "longest");
    ASSERT_EQ(Open(longest), 0);
    EXPECT_EQ(Read(9), "longest");
}

TEST_F(FileBlockTest, OnlyARegularFileOpensAndNothingIsWaitedFor)
{
    ASSERT_EQ(::mkfifo(Path("pipe.tif").c_str(), 0600), 0);
    fs::create_directory(folder / "folder.tif");
    fs::create_symlink("/dev/zero", folder / "device.tif");
    for (const char* name : {"pipe.tif", "folder.tif", "device.tif"})
    {
        EXPECT_EQ(Open(name), -1) << name;
        EXPECT_EQ(FileBlockProblem(block), "not a regular file") << name;
    }
    EXPECT_EQ(Open("missing.tif"), -1);
    EXPECT_EQ(FileBlockProblem(block), "No such file or directory");
    EXPECT_EQ(FileBlockName(block), Path("missing.tif"));
    fs::create_symlink("loop.tif", folder / "loop.tif");
    EXPECT_EQ(Open("loop.tif"), -1);
    EXPECT_EQ(FileBlockProblem(block), "Too many levels of symbolic links");

    Write("large.tif", "");
    fs::resize_file(folder / "large.tif", 4294967296);
    EXPECT_EQ(Open("large.tif"), -1);
    EXPECT_EQ(FileBlockProblem(block), "larger than 4294967295 bytes");
    fs::resize_file(folder / "large.tif", 4294967295);
    ASSERT_EQ(Open("large.tif"), 0);
    EXPECT_EQ(FileBlockSeek(block, 4294967290), 5);
    EXPECT_EQ(Read(9), std::string(5, '\0'));
}

TEST_F(FileBlockTest, BlockWithoutAFileIsSafe)
{
    char byte;
    for (int round = 0; round < 2; ++round)
    {
        EXPECT_EQ(FileBlockSeek(block, 0), -1);
        EXPECT_EQ(FileBlockRead(block, &byte, 1), -1);
        EXPECT_EQ(FileBlockClose(block), 0);
        EXPECT_NE(FileBlockProblem(block), "");
        EXPECT_EQ(Open("missing.tif"), -1);
    }
    EXPECT_EQ(FileBlockFree(nullptr), 0);
}

TEST_F(FileBlockTest, InterruptedAndShortReadsAreContinued)
{
    Write("a.tif", "0123456789");
    Faults().openInterruptions = 2;
    ASSERT_EQ(Open("a.tif"), 0);
    Faults().readInterruptions = 3;
    Faults().longestRead = 3;
    EXPECT_EQ(Read(8), "01234567");
    EXPECT_EQ(Read(8), "89");
}

TEST_F(FileBlockTest, ErrorsOfTheSystemAreReported)
{
    Write("a.tif", "0123456789");
    Faults().fstatError = EIO;
    EXPECT_EQ(Open("a.tif"), -1);
    EXPECT_EQ(FileBlockProblem(block), "Input/output error");
    Faults() = {};
    ASSERT_EQ(Open("a.tif"), 0);
    EXPECT_EQ(Read(4), "0123");
    Faults().readError = EIO;
    EXPECT_EQ(Read(4), "error");
    EXPECT_EQ(FileBlockProblem(block), "Input/output error");
    Faults() = {};
    EXPECT_EQ(Read(4), "4567"); // the position did not move
    Faults().fstatError = ESTALE;
    EXPECT_EQ(FileBlockSeek(block, 0), -1);
    Faults() = {};
    EXPECT_EQ(Read(4), "89");
    Faults().closeError = EIO;
    EXPECT_EQ(FileBlockClose(block), -1);
    EXPECT_EQ(FileBlockRead(block, nullptr, 0), -1);
}
