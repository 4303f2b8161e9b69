#include "host/Progress.h"
#include "tests/support/SystemFaults.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <string>

#include <unistd.h>

namespace HostTest
{
    using namespace Host;
    using namespace std::chrono_literals;
    using ::testing::ContainsRegex;
    using ::testing::EndsWith;
    using ::testing::StartsWith;

    /// A terminal whose other end the test reads; reading waits for something to be there.
    class ProgressTest : public ::testing::Test
    {
    protected:
        ProgressTest() { EXPECT_EQ(pipe(ends), 0); }
        ~ProgressTest() override { close(ends[0]); }

        int Terminal() const { return ends[1]; }

        std::string Shown() const
        {
            char buffer[4096];
            const ssize_t size = read(ends[0], buffer, sizeof buffer);
            return size > 0 ? std::string(buffer, static_cast<std::size_t>(size)) : std::string();
        }

        /// All that is still to be read, once nobody writes any more.
        std::string Rest() const
        {
            close(ends[1]);
            std::string rest;
            for (std::string next = Shown(); !next.empty(); next = Shown())
            {
                rest += next;
            }
            return rest;
        }

        int ends[2] = {};
    };

    TEST_F(ProgressTest, LongRunIsShownAndTakenAway)
    {
        {
            const Progress progress(Terminal(), 1, "of the separations", 0ms);
            EXPECT_THAT(Shown(), ContainsRegex("^\r[^ ]*: [0-9]+ s, [0-9]+ % of the separations read\x1b\\[K"));
        }
        EXPECT_THAT(Rest(), EndsWith("\r\x1b[K"));
    }

    TEST_F(ProgressTest, ShortRunShowsNothing)
    {
        {
            const Progress progress(Terminal(), 1, "of the separations", 1h);
        }
        EXPECT_EQ(Rest(), "");
    }

    TEST_F(ProgressTest, NothingIsShownWhereNoThreadCanBeHad)
    {
        {
            const TestSupport::SystemFault fault("pthread_create", EAGAIN);
            const Progress progress(Terminal(), 1, "of the separations", 0ms);
            EXPECT_TRUE(fault.HasHappened());
        }
        EXPECT_EQ(Rest(), "");
    }
}
