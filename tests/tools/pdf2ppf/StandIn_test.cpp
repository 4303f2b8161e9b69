// The program with something in Ghostscript's place that does not behave, and signals while it runs.
#include "tests/tools/pdf2ppf/Documents.h"
#include "tests/tools/pdf2ppf/Runs.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <csignal>

#include <unistd.h>

namespace Pdf2PpfTest
{
    using ::testing::ElementsAre;
    using ::testing::HasSubstr;
    using ::testing::MatchesRegex;

    /// Whether the process ends, and whoever takes over orphans reaps it.
    bool Ends(pid_t process)
    {
        return TestSupport::Until([=] { return kill(process, 0) != 0 && errno == ESRCH; });
    }

    class StandInTest : public RunTest
    {
    protected:
        StandInTest()
        {
            const PdfPage page{"0 0 144 72", FillSpot(0, "1", "0 0 9 9"), {"Gold"}};
            folder.Write("a.pdf", Pdf({page, page}));
        }

        /// The error line of a run that fails and leaves nothing.
        std::string Failure()
        {
            EXPECT_EQ(Run("pdf2ppf a.pdf -o out.ppf"), 1);
            EXPECT_THAT(Error(), MatchesRegex("pdf2ppf: error: [^\n]*\n"));
            EXPECT_THAT(folder.Names(), ElementsAre("a.pdf"));
            return Error();
        }
    };

    TEST_F(StandInTest, MissingGhostscriptIsNamedWithItsPackage)
    {
        EXPECT_EQ(Run("PATH=/nowhere pdf2ppf a.pdf -o out.ppf"), 1);
        EXPECT_EQ(
            Error(), "pdf2ppf: error: Ghostscript is needed and not installed: there is no gs on the PATH; install the "
                     "package ghostscript\n");
        EXPECT_THAT(folder.Names(), ElementsAre("a.pdf"));
    }

    TEST_F(StandInTest, BadEndIsSaid)
    {
        StandIn("gs", "exit 3");
        EXPECT_EQ(Failure(), "pdf2ppf: error: a.pdf: Ghostscript ended with status 3\n");
        EXPECT_EQ(Run("trap '' CHLD; pdf2ppf a.pdf -o out.ppf"), 1);
        EXPECT_EQ(Error(), "pdf2ppf: error: a.pdf: Ghostscript ended with status 3\n");
        StandIn("gs", "echo 'gs: no such library' >&2; touch 1.tif '1(Cyan).tif'; exit 127");
        EXPECT_EQ(Failure(), "pdf2ppf: error: a.pdf: Ghostscript ended with status 127: gs: no such library\n");
        StandIn("gs", "touch 1.tif '1(Cyan).tif'; kill -9 $$");
        EXPECT_EQ(Failure(), "pdf2ppf: error: a.pdf: Ghostscript was ended by signal 9 (Killed)\n");
    }

    TEST_F(StandInTest, NonsenseIsNoPage)
    {
        StandIn("gs", "exit 0");
        EXPECT_EQ(Failure(), "pdf2ppf: error: a.pdf: Ghostscript found no page in it\n");
        StandIn("gs", "head -c 3000000 /dev/urandom; head -c 3000000 /dev/urandom >&2");
        EXPECT_THAT(Failure(), HasSubstr("found no page in it"));
        StandIn("gs", "touch 1.tif; touch '1()'");
        EXPECT_EQ(Failure(), "pdf2ppf: error: a.pdf: page 1: Ghostscript wrote no separation Cyan\n");
        StandIn("gs", "touch 1.tif; for ink in Cyan Magenta Yellow Black; do echo no TIFF >\"1($ink).tif\"; done");
        EXPECT_THAT(Failure(), HasSubstr("page 1: what Ghostscript wrote cannot be used: "));
        StandIn("gs", "mkdir sub .hidden; touch sub/x; ln -s /etc/passwd 'x(y).tif'");
        EXPECT_THAT(Failure(), HasSubstr("found no page in it"));
    }

    TEST_F(StandInTest, PageOrInkThatIsMissingIsNoticed)
    {
        const std::string real = "PATH=${PATH#*:}; gs \"$@\" ";
        for (const std::string named : {"2>/dev/null", "2>&1 | sed s/Gold/Gilt/ >&2"})
        {
            StandIn("gs", real + named);
            EXPECT_THAT(
                Failure(), HasSubstr("page 1: the spot colours that Ghostscript wrote are not those that it named"));
        }
        StandIn("gs", real + "&& rm 2*.tif");
        EXPECT_THAT(Failure(), HasSubstr("Ghostscript rendered 1 of its 2 pages"));
        StandIn("gs", real + "&& for f in 2*Gold*; do head -c 100 \"$f\" >x && mv x \"$f\"; done");
        EXPECT_THAT(Failure(), HasSubstr("page 2: what Ghostscript wrote cannot be used: "));
    }

    TEST_F(StandInTest, WhatItLeavesRunningIsEnded)
    {
        StandIn("gs", "sleep 1000 & echo $! >\"$said/pid\"; exit 3");
        EXPECT_THAT(Failure(), HasSubstr("ended with status 3"));
        EXPECT_TRUE(Ends(std::stoi(said.Read("pid"))));
    }

    TEST_F(StandInTest, SignalEndsAllAndLeavesNothing)
    {
        // Deaf to what it may be deaf to, with a child of its own, in the middle of a page.
        StandIn(
            "gs", "trap '' INT TERM HUP; touch 1.tif '1(Cyan).tif' gs_temp; sleep 1000 & echo $! $$ >\"$said/new\" && "
                  "mv \"$said/new\" \"$said/pids\"; wait; sleep 1000");
        for (const int signal : {SIGTERM, SIGHUP, SIGINT})
        {
            unlink((said / "pids").c_str());
            const pid_t process = Start({"a.pdf", "-o", "out.ppf"});
            ASSERT_TRUE(TestSupport::Until([&] { return access((said / "pids").c_str(), F_OK) == 0; }));
            EXPECT_EQ(temporary.Names().size(), 1U);
            const std::string pids = said.Read("pids");
            EXPECT_EQ(End(process, signal), -signal);
            EXPECT_TRUE(temporary.Names().empty()) << "signal " << signal;
            EXPECT_THAT(folder.Names(), ElementsAre("a.pdf")) << "signal " << signal;
            std::size_t next = 0;
            for (const pid_t left : {std::stoi(pids, &next), std::stoi(pids.substr(next))})
            {
                EXPECT_TRUE(Ends(left)) << "signal " << signal;
            }
        }
    }
}
