// The built program, with a folder of its own: what it does in it, when it ends, and what is there after it was killed.
#include "tests/support/PlainTiff.h"
#include "tests/support/ShellTest.h"

#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <thread>
#include <utility>

#include <sys/wait.h>

namespace PpfWatchTest
{
    namespace
    {
        using namespace std::chrono_literals;
        using ::testing::ContainsRegex;
        using ::testing::ElementsAre;
        using ::testing::HasSubstr;
        using ::testing::IsEmpty;
        using ::testing::MatchesRegex;
        using TestSupport::PlainTiff;
        namespace fs = std::filesystem;

        class WatchTest : public TestSupport::ShellTest
        {
        protected:
            WatchTest()
                : ShellTest(PPFWATCH_PROGRAM)
            {
                Configure(R"("settleSeconds":0.1)");
                fs::create_directory(folder / "in");
            }

            ~WatchTest() override
            {
                if (process > 0)
                {
                    kill(process, SIGKILL);
                    waitpid(process, nullptr, 0);
                }
            }

            void Configure(const std::string& members)
            {
                folder.Write("c.json", R"({"names":"{job}_{ink}.tif",)" + members + '}');
            }

            void Drop(const std::string& name) const { folder.Write("in/" + name, PlainTiff()); }

            void Start(std::vector<std::string> arguments = {})
            {
                arguments.emplace_back("c.json");
                process = ShellTest::Start(arguments);
            }

            int End(int signal = 0) { return ShellTest::End(std::exchange(process, -1), signal); }

            /// From now on a shell script stands in the place of tiff2ppf; "$out" is what it is to write.
            void ConvertBy(const std::string& script)
            {
                program = programs / "ppfwatch";
                fs::copy_file(PPFWATCH_PROGRAM, program, fs::copy_options::skip_existing);
                StandIn("tiff2ppf", "for out; do :; done\n" + script);
            }

            /// Starts it; whether it has begun to watch.
            bool Watches()
            {
                Start();
                return UntilSaid("watching");
            }

            int RunOnce()
            {
                Start({"--once"});
                return End();
            }

            bool UntilThere(const std::string& name) const
            {
                return TestSupport::Until([&] { return fs::exists(folder / name); });
            }

            bool UntilSaid(const std::string& text) const
            {
                return TestSupport::Until([&] { return Error().find(text) != std::string::npos; });
            }

            pid_t process = -1;
        };

        TEST_F(WatchTest, OnceConvertsWhatIsThere)
        {
            Drop("J_C.tif");
            Drop("J_K.tif");
            Drop("\xFF_K.tif");
            folder.Write("in/cut_K.tif", PlainTiff().substr(0, 100));
            EXPECT_EQ(RunOnce(), 0) << Error();
            EXPECT_THAT(folder.Names("out"), ElementsAre("J.ppf", "\xFF.ppf"));
            EXPECT_THAT(folder.Names("done"), ElementsAre("J", "\xFF"));
            EXPECT_THAT(folder.Names("done/J"), ElementsAre("J_C.tif", "J_K.tif"));
            EXPECT_THAT(folder.Names("in"), ElementsAre("cut_K.tif"));
            EXPECT_THAT(temporary.Names(), IsEmpty());
            EXPECT_THAT(Error(), HasSubstr(" cut_K.tif: the TIFF is not there to its end"));
        }

        TEST_F(WatchTest, JobThatFailsMovesWithItsLine)
        {
            folder.Write("in/J.json", R"({"jobName":"J","sheets":[{"front":[{"separation":"K","file":"k.tif"}]}]})");
            folder.Write("in/k.tif", "no TIFF");
            folder.Write("in/broken.json", "{");
            EXPECT_EQ(RunOnce(), 1);
            EXPECT_THAT(folder.Names("failed"), ElementsAre("J", "broken"));
            EXPECT_THAT(folder.Names("failed/J"), ElementsAre("J.json", "error.txt", "k.tif"));
            EXPECT_THAT(folder.Read("failed/J/error.txt"), MatchesRegex("tiff2ppf: error: [^\n]*k.tif[^\n]*\n"));
            EXPECT_THAT(
                folder.Read("failed/broken/error.txt"), MatchesRegex("tiff2ppf: error: [^\n]*broken.json[^\n]*\n"));
            EXPECT_THAT(folder.Names("out"), IsEmpty());
            EXPECT_THAT(folder.Names("in"), IsEmpty());
        }

        TEST_F(WatchTest, DroppedJobIsConvertedAndTermEndsWell)
        {
            ASSERT_TRUE(Watches());
            const auto dropped = std::chrono::steady_clock::now();
            Drop("J_C.tif");
            ASSERT_TRUE(UntilSaid("J: converting"));
            EXPECT_LT(std::chrono::steady_clock::now() - dropped, 9s) << "a look would come after ten";
            ASSERT_TRUE(UntilThere("done/J/J_C.tif"));
            EXPECT_TRUE(fs::exists(folder / "out/J.ppf"));
            EXPECT_EQ(End(SIGTERM), 0);
            EXPECT_THAT(Error(), MatchesRegex("([0-9-]+T[0-9:]+[+-][0-9]+ [^\n]+\n)+"));
            EXPECT_THAT(folder.Names("out"), ElementsAre("J.ppf"));
        }

        TEST_F(WatchTest, SecondProcessIsRefused)
        {
            ASSERT_TRUE(Watches());
            const pid_t first = process;
            EXPECT_EQ(RunOnce(), 1);
            process = first;
            EXPECT_THAT(Error(), ContainsRegex("\nppfwatch: error: [^\n]*/in is watched by another process[^\n]*\n"));
            EXPECT_EQ(End(SIGINT), 0);
        }

        TEST_F(WatchTest, HangUpReadsTheConfigurationAgain)
        {
            ASSERT_TRUE(Watches());
            Configure(R"("out":"in")");
            kill(process, SIGHUP);
            ASSERT_TRUE(UntilSaid("out: this is the same folder as \"in\""));
            Drop("J_C.tif");
            ASSERT_TRUE(UntilThere("out/J.ppf")) << "the old one is gone";

            Configure(R"("out":"other","settleSeconds":0.1)");
            kill(process, SIGHUP);
            Drop("L_C.tif");
            ASSERT_TRUE(UntilThere("other/L.ppf"));
            EXPECT_EQ(End(SIGTERM), 0);
        }

        TEST_F(WatchTest, FolderThatVanishesIsReportedAndMayComeBack)
        {
            ASSERT_TRUE(Watches());
            fs::rename(folder / "in", folder / "gone");
            ASSERT_TRUE(UntilSaid("/in cannot be looked at: No such file or directory; it is tried again"));
            kill(process, SIGHUP); // it starts anew, and makes what is missing
            ASSERT_TRUE(UntilThere("in"));
            Drop("J_C.tif");
            ASSERT_TRUE(UntilThere("out/J.ppf"));
            EXPECT_EQ(End(SIGTERM), 0);
        }

        TEST_F(WatchTest, CrashOfAConversionIsAJobThatFails)
        {
            ConvertBy("echo half >\"$out\"; kill -SEGV $$");
            Drop("J_C.tif");
            EXPECT_EQ(RunOnce(), 1);
            EXPECT_THAT(
                folder.Read("failed/J/error.txt"),
                MatchesRegex("tiff2ppf: error: the program was ended by signal 11, [^\n]+\n"));
            EXPECT_THAT(folder.Names("out"), IsEmpty());
        }

        TEST_F(WatchTest, SourceThatIsReplacedWhileItIsReadIsConvertedOnceMore)
        {
            ConvertBy("[ -e ../out/J.ppf ] && touch ../early; cat J_C.tif >\"$out\"; [ -e ../new ] && mv ../new "
                      "J_C.tif; true");
            Drop("J_C.tif");
            folder.Write("new", PlainTiff(4, 2, 9));
            EXPECT_EQ(RunOnce(), 0) << Error();
            EXPECT_EQ(folder.Read("out/J.ppf"), PlainTiff(4, 2, 9));
            EXPECT_EQ(folder.Read("done/J/J_C.tif"), PlainTiff(4, 2, 9));
            EXPECT_FALSE(fs::exists(folder / "early")) << "what was made of the old one was to be seen";
            EXPECT_THAT(folder.Names("done"), ElementsAre("J"));
        }

        TEST_F(WatchTest, SetThatGetsAFileWhileItIsReadIsConvertedOnceMore)
        {
            ConvertBy("ls p* >\"$out\"; mv ../new p-K 2>/dev/null; true"); // two run at once, one moves it
            Drop("p-C");
            folder.Write("new", PlainTiff(4, 2, 9));
            fs::create_directory(folder / "in/p-Folder");
            folder.Write("in/J.json", R"({"sheets":[{"front":[{"set":"p-*"}]}]})");
            folder.Write("in/Wrong.json", R"({"sheets":[{"front":[{"set":"p"}]}]})");
            EXPECT_EQ(RunOnce(), 0) << Error();
            EXPECT_THAT(folder.Read("out/J.ppf"), HasSubstr("p-K\n"));
            EXPECT_THAT(folder.Names("done/J"), ElementsAre("J.json", "p-C", "p-K"));
            EXPECT_THAT(folder.Names("done/Wrong"), ElementsAre("Wrong.json")) << "it is the program that refuses it";
            EXPECT_THAT(folder.Names("in"), ElementsAre("p-Folder"));
        }

        TEST_F(WatchTest, WhatIsBeingConvertedIsFinishedBeforeTheEnd)
        {
            ConvertBy("touch ../started; until [ -e ../go ]; do sleep 0.05; done; echo whole >\"$out\"");
            Configure(R"("settleSeconds":0,"workers":1)");
            Drop("J_C.tif");
            Drop("K_C.tif");
            Start();
            ASSERT_TRUE(UntilThere("started"));
            kill(process, SIGTERM);
            folder.Write("go", "");
            EXPECT_EQ(End(), 0);
            EXPECT_EQ(folder.Names("out").size(), 1U);
            EXPECT_EQ(folder.Names("in").size(), 1U);
        }

        TEST_F(WatchTest, KilledWatcherTakesItsConversionsWithIt)
        {
            ConvertBy("touch \"$TMPDIR/left\"; echo half >\"$out\"; echo $$ >../new && mv ../new ../pid; while :; do "
                      "sleep 0.05; done");
            Configure(R"("settleSeconds":0)");
            Drop("J_C.tif");
            Start();
            ASSERT_TRUE(UntilThere("pid"));
            const pid_t conversion = std::stoi(folder.Read("pid"));
            End(SIGKILL);
            EXPECT_TRUE(TestSupport::Until([=] { return kill(conversion, 0) != 0; }));
            ConvertBy("echo whole >\"$out\"");
            EXPECT_EQ(RunOnce(), 0) << Error();
            EXPECT_THAT(folder.Names("out"), ElementsAre("J.ppf"));
            EXPECT_EQ(folder.Read("out/J.ppf"), "whole\n");
            EXPECT_THAT(temporary.Names(), IsEmpty());
        }

        TEST_F(WatchTest, UnreachableFolderIsNoFaultOfTheJob)
        {
            ConvertBy("rm -r ../out; echo 'tiff2ppf: error: no space'>&2; exit 1");
            Drop("J_C.tif");
            EXPECT_EQ(RunOnce(), 1);
            EXPECT_THAT(folder.Names("in"), ElementsAre("J_C.tif"));
            EXPECT_THAT(folder.Names("failed"), IsEmpty());
            EXPECT_THAT(
                Error(), HasSubstr("/out: No such file or directory; J waits for it: tiff2ppf: error: no space"));
        }

        TEST_F(WatchTest, JournalGetsPriorities)
        {
            setenv("JOURNAL_STREAM", "1:2", 1);
            setenv("INVOCATION_ID", "x", 1);
            folder.Write("in/J.json", "{");
            EXPECT_EQ(RunOnce(), 1);
            unsetenv("JOURNAL_STREAM");
            unsetenv("INVOCATION_ID");
            EXPECT_THAT(Error(), ContainsRegex("^<6>watching [^\n]*\n<6>J: converting [^\n]*\n<3>J: failed: "));
        }

        TEST_F(WatchTest, KilledAtAnyMomentItLosesNothing)
        {
            Configure(R"("settleSeconds":0,"workers":3)");
            constexpr int Jobs = 60;
            for (int i = 0; i < Jobs; ++i)
            {
                Drop('J' + std::to_string(i) + "_C.tif");
                Drop('J' + std::to_string(i) + "_K.tif");
            }
            for (int i = 0; i < 12; ++i)
            {
                Start();
                std::this_thread::sleep_for(std::chrono::milliseconds(10 + 17 * i % 50));
                EXPECT_EQ(End(SIGKILL), -SIGKILL);
                for (const std::string& name :
                     fs::exists(folder / "out") ? folder.Names("out") : std::vector<std::string>())
                {
                    if (name.front() != '.')
                    {
                        const std::string bytes = folder.Read("out/" + name);
                        EXPECT_THAT(bytes, ::testing::EndsWith("%%CIP3EndOfFile\n")) << name;
                    }
                }
            }
            EXPECT_EQ(RunOnce(), 0) << Error();
            EXPECT_THAT(folder.Names("in"), IsEmpty());
            EXPECT_THAT(temporary.Names(), IsEmpty());
            EXPECT_EQ(folder.Names("out").size(), static_cast<std::size_t>(Jobs));
            EXPECT_EQ(folder.Names("done").size(), static_cast<std::size_t>(Jobs));
            for (const std::string& name : folder.Names("done"))
            {
                EXPECT_THAT(folder.Names("done/" + name), ElementsAre(name + "_C.tif", name + "_K.tif"));
                EXPECT_THAT(folder.Read("out/" + name + ".ppf"), HasSubstr("[ (Cyan) (Black) ]")) << name;
            }
        }
    }
}
