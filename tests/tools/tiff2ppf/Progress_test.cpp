#include "tiff2ppf/Progress.h"

#include <gmock/gmock.h>

#include <fstream>
#include <string>

#include <unistd.h>

namespace
{
    using namespace Tiff2Ppf;
    using namespace std::chrono_literals;
    using ::testing::EndsWith;
    using ::testing::StartsWith;

    /// A terminal whose other end the test reads; reading waits for something to be there.
    class ProgressTest : public ::testing::Test
    {
    protected:
        ProgressTest()
        {
            EXPECT_EQ(pipe(ends), 0);
            terminal.open("/proc/self/fd/" + std::to_string(ends[1]));
            close(ends[1]);
        }
        ~ProgressTest() override { close(ends[0]); }

        std::string Shown() const
        {
            char buffer[4096];
            const ssize_t size = read(ends[0], buffer, sizeof buffer);
            return size > 0 ? std::string(buffer, static_cast<std::size_t>(size)) : std::string();
        }

        int ends[2] = {};
        std::ofstream terminal;
    };

    TEST_F(ProgressTest, LongRunIsShownAndTakenAway)
    {
        {
            const Progress progress(terminal, 1, 0ms);
            EXPECT_THAT(Shown(), StartsWith("\rtiff2ppf: "));
        }
        terminal.close();
        std::string rest;
        for (std::string next = Shown(); !next.empty(); next = Shown())
        {
            rest += next;
        }
        EXPECT_THAT(rest, EndsWith("\r\x1b[K"));
    }

    TEST_F(ProgressTest, ShortRunShowsNothing)
    {
        {
            const Progress progress(terminal, 1, 1h);
        }
        terminal.close();
        EXPECT_EQ(Shown(), "");
    }
}
