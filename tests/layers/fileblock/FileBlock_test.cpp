// The block operations on real files, sound and odd, and on a system that fails.
#include "tests/support/Allocations.h"
#include "tests/support/Folder.h"
#include "tests/support/SystemFaults.h"

#include <FileBlockLib.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>

#include <sys/stat.h>

namespace FileBlockTest
{
    namespace
    {
        namespace fs = std::filesystem;

        /// A folder with files of its own, and a block that is open on none of them yet.
        class FileBlockOperations : public testing::Test
        {
        protected:
            ~FileBlockOperations() override
            {
                FileBlockFree(block);
                EXPECT_EQ(TestSupport::OpenDescriptors(), openBefore);
            }

            std::string Path(const std::string& name) const { return folder / name; }
            void Write(const std::string& name, const std::string& bytes) const { folder.Write(name, bytes); }
            std::int32_t Open(const std::string& name) { return FileBlockOpen(block, Path(name).c_str(), ".tif", 0); }
            std::string Read(std::uint32_t size)
            {
                std::string bytes(size, '\0');
                const std::int64_t count = FileBlockRead(block, bytes.data(), size);
                return count < 0 ? "error" : bytes.substr(0, static_cast<std::size_t>(count));
            }

            const TestSupport::Folder folder;
            const int openBefore = TestSupport::OpenDescriptors();
            const FileBlock block = FileBlockAlloc(0, "STR,SEQ");
        };
    }

    TEST_F(FileBlockOperations, ReadsFromAnyPositionUpToTheEnd)
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
        fs::resize_file(Path("a.tif"), 4);
        EXPECT_EQ(FileBlockSeek(block, 1), 3);
        EXPECT_EQ(Read(9), "123");
        EXPECT_EQ(FileBlockClose(block), 0);
    }

    TEST_F(FileBlockOperations, NameWithoutExtensionTakesTheDefaultOne)
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
        // The point in the name of a folder starts no extension, nor does the first of a hidden file.
        fs::create_directory(Path("d.x"));
        Write("d.x/.hidden.tif", "hidden");
        ASSERT_EQ(Open("d.x/.hidden"), 0);
        EXPECT_EQ(Read(9), "hidden");
        // Names are bytes, and as long as the system allows.
        const std::string longest(255, '\xe9');
        Write(longest, "longest");
        ASSERT_EQ(Open(longest), 0);
        EXPECT_EQ(Read(9), "longest");
    }

    TEST_F(FileBlockOperations, OnlyARegularFileOpensAndNothingIsWaitedFor)
    {
        ASSERT_EQ(::mkfifo(Path("pipe.tif").c_str(), 0600), 0);
        fs::create_directory(Path("folder.tif"));
        fs::create_symlink("/dev/zero", Path("device.tif"));
        for (const char* name : {"pipe.tif", "folder.tif", "device.tif"})
        {
            EXPECT_EQ(Open(name), -1) << name;
            EXPECT_EQ(FileBlockProblem(block), "not a regular file") << name;
        }
        EXPECT_EQ(Open("missing.tif"), -1);
        EXPECT_EQ(FileBlockProblem(block), "No such file or directory");
        EXPECT_EQ(FileBlockName(block), Path("missing.tif"));
        fs::create_symlink("loop.tif", Path("loop.tif"));
        EXPECT_EQ(Open("loop.tif"), -1);
        EXPECT_EQ(FileBlockProblem(block), "Too many levels of symbolic links");

        Write("large.tif", "");
        fs::resize_file(Path("large.tif"), 4294967296);
        EXPECT_EQ(Open("large.tif"), -1);
        EXPECT_EQ(FileBlockProblem(block), "larger than 4294967295 bytes");
        fs::resize_file(Path("large.tif"), 4294967295);
        ASSERT_EQ(Open("large.tif"), 0);
        EXPECT_EQ(FileBlockSeek(block, 4294967290), 5);
        EXPECT_EQ(Read(9), std::string(5, '\0'));
    }

    TEST_F(FileBlockOperations, BlockWithoutAFileIsSafe)
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

    TEST_F(FileBlockOperations, InterruptedAndShortCallsAreContinued)
    {
        Write("a.tif", "0123456789");
        const TestSupport::Stutter stutter(3);
        ASSERT_EQ(Open("a.tif"), 0);
        EXPECT_EQ(Read(8), "01234567");
        EXPECT_EQ(Read(8), "89");
        EXPECT_EQ(FileBlockClose(block), 0);
    }

    TEST_F(FileBlockOperations, EveryFailingCallOfOpeningIsReportedAndNothingStaysOpen)
    {
        Write("a.tif", "0123456789");
        Write("none", "0123456789");
        for (const char* const call : {"stat", "open", "fstat"})
        {
            const TestSupport::SystemFault fault(call, EACCES);
            EXPECT_EQ(Open("a.tif"), -1) << call;
            EXPECT_EQ(FileBlockProblem(block), "Permission denied") << call;
            EXPECT_EQ(TestSupport::OpenDescriptors(), openBefore) << call;
        }
        // After a failure other than that there is no such file the name is not tried without the default extension.
        const TestSupport::SystemFault fault("stat", EIO);
        EXPECT_EQ(Open("none"), -1);
        EXPECT_EQ(FileBlockName(block), Path("none.tif"));
        EXPECT_EQ(FileBlockProblem(block), "Input/output error");
    }

    TEST_F(FileBlockOperations, FailingCallsOnAnOpenFileAreReportedAndMoveNothing)
    {
        Write("a.tif", "0123456789");
        ASSERT_EQ(Open("a.tif"), 0);
        EXPECT_EQ(Read(4), "0123");
        {
            const TestSupport::SystemFault fault("pread", EIO);
            EXPECT_EQ(Read(4), "error");
            EXPECT_EQ(FileBlockProblem(block), "Input/output error");
        }
        EXPECT_EQ(Read(4), "4567");
        {
            const TestSupport::SystemFault fault("fstat", ESTALE);
            EXPECT_EQ(FileBlockSeek(block, 0), -1);
            EXPECT_EQ(FileBlockProblem(block), "Stale file handle");
        }
        EXPECT_EQ(Read(4), "89");
        const TestSupport::SystemFault fault("close", EIO);
        EXPECT_EQ(FileBlockClose(block), -1);
        EXPECT_EQ(FileBlockProblem(block), "Input/output error");
        EXPECT_EQ(FileBlockRead(block, nullptr, 0), -1);
    }

    TEST_F(FileBlockOperations, WantOfMemoryIsReportedAndNothingStaysOpen)
    {
        TestSupport::FailOneAllocation(1);
        EXPECT_EQ(FileBlockAlloc(0, "STR,SEQ"), nullptr);
        TestSupport::AllowAllocations();
        Write("a-name-that-no-string-keeps-in-itself", "0123456789");
        const std::string path = Path("a-name-that-no-string-keeps-in-itself");
        int refused = 0;
        for (long number = 1, reached = number; reached >= number; ++number)
        {
            const FileBlock fresh = FileBlockAlloc(0, "STR,SEQ");
            TestSupport::FailOneAllocation(number);
            const std::int32_t result = FileBlockOpen(fresh, path.c_str(), ".tif", 0);
            reached = TestSupport::AllocationCount();
            TestSupport::AllowAllocations();
            EXPECT_EQ(result, reached >= number ? -1 : 0) << number;
            EXPECT_EQ(FileBlockProblem(fresh), reached >= number ? "memory is exhausted" : "") << number;
            refused += result != 0 ? 1 : 0;
            FileBlockFree(fresh);
        }
        EXPECT_GT(refused, 1);
    }
}
