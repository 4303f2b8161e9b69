#include "host/Failure.h"
#include "ppfwatch/Config.h"
#include "tests/support/Failures.h"
#include "tests/support/Folder.h"

#include <gmock/gmock.h>

namespace PpfWatchTest
{
    namespace
    {
        using PpfWatch::Config;
        using PpfWatch::LoadConfig;
        using ::testing::ElementsAre;
        using ::testing::HasSubstr;
        using ::testing::Pair;
        using ::testing::StartsWith;

        class ConfigTest : public ::testing::Test
        {
        protected:
            Config Load(const std::string& json) { return LoadConfig(folder.Write("c.json", json)); }

            std::string RefusalOf(const std::string& json)
            {
                const std::string text = TestSupport::FailureOf<Host::UsageError>([&] { Load(json); });
                const std::string place = (folder / "c.json") + ": ";
                EXPECT_THAT(text, StartsWith(place));
                return text.substr(std::min(place.size(), text.size()));
            }

            TestSupport::Folder folder;
        };

        TEST_F(ConfigTest, FoldersStandRelativeToItsOwn)
        {
            const Config config = Load(R"({"in":"./a//b/","out":"/o","done":"../d"})");
            EXPECT_EQ(config.in, folder / "a/b");
            EXPECT_EQ(config.out, "/o");
            EXPECT_EQ(config.done, folder / "../d");
            EXPECT_EQ(config.failed, folder / "failed");
        }

        TEST_F(ConfigTest, EveryMemberIsTaken)
        {
            const Config config = Load(R"-({"names":"{job}-{ink}","settleSeconds":0.25,"separations":4,"workers":8,
                "resolution":72,"parameters":{"A":"(x)","B":7,"C":0.5,"D":{"value":135,"units":"g"}}})-");
            EXPECT_TRUE(config.names.Match("J-C"));
            EXPECT_EQ(config.settle, std::chrono::milliseconds(250));
            EXPECT_EQ(config.separations, 4U);
            EXPECT_EQ(config.workers, 8U);
            EXPECT_EQ(config.resolution, "72");
            EXPECT_EQ(config.parameters, R"-({"A":"(x)","B":7,"C":0.5,"D":{"units":"g","value":135}})-");
            EXPECT_THAT(
                config.parameterText,
                ElementsAre(Pair("A", "(x)"), Pair("B", "7"), Pair("C", "0.500000"), Pair("D", "135 g")));
        }

        TEST_F(ConfigTest, WrongMemberIsRefusedWithItsPlace)
        {
            for (const auto& [json, why] : std::vector<std::pair<std::string, std::string>>{
                     {R"([])", "an object is needed"},
                     {R"({"In":"x"})", "In: there is no such member"},
                     {R"({"in":"x","in":"y"})", "in: this member is repeated"},
                     {R"({"in":5})", "in: a string is needed"},
                     {R"({"in":""})", "in: this may not be empty"},
                     {R"({"out":"in"})", "out: this is the same folder"},
                     {R"({"in":"x","failed":"./x/"})", "failed: this is the same folder"},
                     {R"({"names":"{job}"})", "names: {ink} is missing"},
                     {R"({"settleSeconds":-1})", "settleSeconds: a number"},
                     {R"({"settleSeconds":"5"})", "settleSeconds: a number"},
                     {R"({"separations":1.5})", "separations: an integer"},
                     {R"({"workers":0})", "workers: an integer from 1"},
                     {R"({"resolution":"fine"})", "resolution: "},
                     {R"({"resolution":2401})", "resolution: "},
                     {R"({"parameters":{"A":null}})", "parameters.A: a string, a number"},
                     {R"({"parameters":5})", "parameters: an object"},
                     {R"({"workers":2)", "line 1, column 13"}})
            {
                EXPECT_THAT(RefusalOf(json), StartsWith(why)) << json;
            }
            EXPECT_THROW(LoadConfig(folder / "none"), Host::UsageError);
            EXPECT_THROW(LoadConfig(folder.Path()), Host::UsageError);
        }
    }
}
