#include "host/Descriptor.h"
#include "host/Progress.h"
#include "tests/support/Folder.h"
#include "tests/support/ShellTest.h"
#include "tests/support/SystemFaults.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <string>

#include <fcntl.h>

namespace HostTest
{
    using namespace Host;
    using namespace std::chrono_literals;
    using ::testing::MatchesRegex;

    class ProgressTest : public ::testing::Test
    {
    protected:
        std::string Shown() const { return folder.Read("terminal"); }

        TestSupport::Folder folder;
        const Descriptor terminal{open(folder.Write("terminal", "").c_str(), O_WRONLY | O_APPEND)};
    };

    TEST_F(ProgressTest, LongRunIsShownAndTakenAway)
    {
        {
            const Progress progress(terminal.Number(), 1, "of the separations", 0ms);
            EXPECT_TRUE(TestSupport::Until([this] { return !Shown().empty(); }));
        }
        EXPECT_THAT(Shown(), MatchesRegex("(\r[^ ]*: [0-9]+ s, [0-9]+ % of the separations read\x1b\\[K)+\r\x1b\\[K"));
    }

    TEST_F(ProgressTest, ShortRunShowsNothing)
    {
        {
            const Progress progress(terminal.Number(), 1, "of the separations", 1h);
        }
        EXPECT_EQ(Shown(), "");
    }

    TEST_F(ProgressTest, NothingIsShownWhereNoThreadCanBeHad)
    {
        {
            const TestSupport::SystemFault fault("pthread_create", EAGAIN);
            const Progress progress(terminal.Number(), 1, "of the separations", 0ms);
            EXPECT_TRUE(fault.HasHappened());
        }
        EXPECT_EQ(Shown(), "");
    }
}
