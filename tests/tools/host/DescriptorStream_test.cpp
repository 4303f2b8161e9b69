#include "host/DescriptorStream.h"
#include "host/Failure.h"
#include "tests/support/Failures.h"
#include "tests/support/Folder.h"
#include "tests/support/SystemFaults.h"

#include <gmock/gmock.h>

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace HostTest
{
    using namespace Host;

    class DescriptorStreamTest : public ::testing::Test
    {
    protected:
        DescriptorStreamTest()
            : file(open((folder / "file").c_str(), O_WRONLY | O_CREAT, 0600))
        {
        }
        ~DescriptorStreamTest() override { close(file); }

        TestSupport::Folder folder;
        int file;
    };

    TEST_F(DescriptorStreamTest, AllBytesArriveInTheirOrder)
    {
        std::string all;
        DescriptorStream stream(file);
        for (int i = 0; i < 30000; ++i)
        {
            stream << i << ' ';
            all += std::to_string(i) + ' ';
        }
        const TestSupport::Stutter stutter(1000);
        stream.Finish("file");
        EXPECT_TRUE(folder.Read("file") == all);
    }

    TEST_F(DescriptorStreamTest, ReasonOfTheFirstFailureIsKept)
    {
        DescriptorStream stream(file);
        {
            const TestSupport::SystemFault fault("write", EDQUOT);
            stream << "lost" << std::flush;
        }
        stream << "not written after a gap";
        EXPECT_EQ(
            TestSupport::FailureOf<Failure>([&] { stream.Finish("file"); }),
            "file cannot be written: Disk quota exceeded");
        EXPECT_EQ(folder.Read("file"), "");
    }
}
