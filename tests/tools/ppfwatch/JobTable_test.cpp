// The jobs' states, with a clock and a folder that are the tests' own.
#include "job/InkSet.h"
#include "ppfwatch/JobTable.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace PpfWatchTest
{
    namespace
    {
        using namespace PpfWatch;
        using namespace std::chrono_literals;
        using ::testing::ElementsAre;
        using ::testing::HasSubstr;
        using ::testing::IsEmpty;
        using ::testing::SizeIs;

        class FakeFiles : public Files
        {
        public:
            std::optional<Stamp> Look(const std::string& name) override
            {
                ++looks;
                const auto found = stamps.find(name);
                return found == stamps.end() ? std::nullopt : std::optional(found->second);
            }
            TiffExtent ExtentOf(const std::string& name) override
            {
                return extents.count(name) == 0 ? TiffExtent::Whole : extents[name];
            }
            std::optional<JobFileNames> NamesIn(const std::string& name) override { return jobFiles[name]; }
            std::vector<std::string> FilesOfSet(const std::string& pattern) override
            {
                std::vector<std::string> names;
                for (const auto& [name, stamp] : stamps)
                {
                    if (Jobs::IsInSet(pattern, name))
                    {
                        names.push_back(name);
                    }
                }
                return names;
            }

            std::map<std::string, Stamp> stamps;
            std::map<std::string, TiffExtent> extents;
            std::map<std::string, JobFileNames> jobFiles;
            int looks = 0;
        };

        class JobTableTest : public ::testing::Test
        {
        protected:
            /// The file is there now, with another stamp than before, and the table hears of it.
            void Drop(const std::string& name)
            {
                Change(name);
                table->Seen(name, files.stamps[name], now);
            }

            /// The same, but nothing tells the table.
            void Change(const std::string& name) { ++files.stamps[name].bytes; }

            void Remove(const std::string& name)
            {
                files.stamps.erase(name);
                table->Gone(name, now);
            }

            /// Lets time go by; gives the jobs that are whole then, each with its files.
            std::vector<std::string> After(std::chrono::milliseconds time)
            {
                now += time;
                table->Examine(now, 1000);
                std::vector<std::string> whole;
                while (const std::optional<Order> order = table->Take())
                {
                    orders.push_back(*order);
                    std::string text = order->job + ':';
                    for (const Order::Source& source : order->sources)
                    {
                        text += ' ' + source.name;
                    }
                    whole.push_back(text);
                }
                return whole;
            }

            FakeFiles files;
            std::vector<std::string> said;
            std::optional<JobTable> table{
                std::in_place, JobTable::Rules{NamePattern("{job}_{ink}.tif"), 5s, 0}, files,
                [this](Level, const std::string& event) { said.push_back(event); }};
            Time now;
            std::vector<Order> orders;
        };

        TEST_F(JobTableTest, SetIsWholeWhenNothingHasComeForLongEnough)
        {
            Drop("J_C.tif");
            EXPECT_THAT(After(4s), IsEmpty());
            Drop("J_K.tif");
            EXPECT_THAT(After(4999ms), IsEmpty());
            EXPECT_EQ(table->NextExamination(), now + 1ms);
            EXPECT_THAT(After(1ms), ElementsAre("J: J_C.tif J_K.tif"));
            EXPECT_EQ(table->NextExamination(), std::nullopt);
        }

        TEST_F(JobTableTest, ChangeThatNothingToldOfIsSeenInTime)
        {
            Drop("J_C.tif");
            Change("J_C.tif");
            EXPECT_THAT(After(5s), IsEmpty());
            EXPECT_THAT(After(4999ms), IsEmpty());
            EXPECT_THAT(After(1ms), SizeIs(1));
        }

        TEST_F(JobTableTest, FileThatCannotBeLookedAtKeepsItsJobWaiting)
        {
            Drop("J_C.tif");
            Drop("J_K.tif");
            files.stamps["J_K.tif"].isUncertain = true;
            EXPECT_THAT(After(5s), IsEmpty());
            EXPECT_EQ(table->Busy(), 1U);
            EXPECT_THAT(After(5s), IsEmpty());
            EXPECT_EQ(table->Busy(), 0U);
            table->Seen("J_K.tif", files.stamps["J_K.tif"], now);
            EXPECT_THAT(After(60s), IsEmpty());
            EXPECT_THAT(said, ElementsAre("J_K.tif: it cannot be looked at; job J waits for it"));
            files.stamps["J_K.tif"].isUncertain = false;
            EXPECT_THAT(After(10s), IsEmpty());
            EXPECT_THAT(After(5s), ElementsAre("J: J_C.tif J_K.tif"));
        }

        TEST_F(JobTableTest, SameNewsAgainChangesNothing)
        {
            Drop("J_C.tif");
            now += 4s;
            table->Seen("J_C.tif", files.stamps["J_C.tif"], now);
            EXPECT_THAT(After(1s), SizeIs(1));
        }

        TEST_F(JobTableTest, NumberOfSeparationsMakesAJobWholeSooner)
        {
            table.emplace(
                JobTable::Rules{NamePattern("{job}_{ink}.tif"), 60s, 2}, files, [](Level, const std::string&) {});
            Drop("J_C.tif");
            EXPECT_THAT(After(59s), IsEmpty());
            Drop("J_K.tif");
            EXPECT_THAT(After(999ms), IsEmpty());
            EXPECT_THAT(After(1ms), SizeIs(1));
            Drop("L_C.tif");
            EXPECT_THAT(After(59999ms), IsEmpty());
            EXPECT_THAT(After(1ms), SizeIs(1));
        }

        TEST_F(JobTableTest, SetWaitsForATiffThatIsStillCopied)
        {
            Drop("J_C.tif");
            Drop("L_C.tif");
            files.extents["J_C.tif"] = TiffExtent::Growing;
            EXPECT_THAT(After(5s), ElementsAre("L: L_C.tif"));
            EXPECT_THAT(After(10s), IsEmpty());
            EXPECT_THAT(said, ElementsAre(HasSubstr("J_C.tif: the TIFF is not there to its end")));
            EXPECT_EQ(table->Busy(), 1U) << "the one that was taken";

            files.extents.clear();
            Drop("J_C.tif");
            EXPECT_THAT(After(5s), ElementsAre("J: J_C.tif"));
        }

        TEST_F(JobTableTest, FileThatVanishesLeavesItsJob)
        {
            Drop("J_C.tif");
            Drop("J_K.tif");
            Drop("L_C.tif");
            Remove("J_C.tif");
            files.stamps.erase("L_C.tif"); // and nothing tells
            EXPECT_THAT(After(5s), ElementsAre("J: J_K.tif"));
            table->Finished(orders[0], orders[0].sources, now);
            EXPECT_EQ(table->Busy(), 0U);
        }

        TEST_F(JobTableTest, WhatALookNoLongerFindsIsGone)
        {
            Drop("J_C.tif");
            Drop("L_C.tif");
            table->BeginListing();
            table->Seen("J_C.tif", files.stamps["J_C.tif"], now);
            table->EndListing(now);
            EXPECT_THAT(After(5s), ElementsAre("J: J_C.tif"));
        }

        TEST_F(JobTableTest, NameThatDoesNotFitIsNamedOnce)
        {
            for (int i = 0; i < 2; ++i)
            {
                for (const char* const name : {"notes.txt", "J_C.tif.part", "..x_C.tif", ".hidden"})
                {
                    Drop(name);
                }
                table->Seen("folder", std::nullopt, now);
            }
            EXPECT_THAT(said, SizeIs(5));
            EXPECT_THAT(After(60s), IsEmpty());
            EXPECT_EQ(table->Busy(), 0U);
        }

        TEST_F(JobTableTest, JobFileIsWholeWithAllThatItNames)
        {
            files.jobFiles["J.json"] = {{"J_C.tif", "sub/k.tif", "/far/m.tif"}, {}};
            Drop("J_C.tif");
            now += 3s;
            Drop("J.json");
            files.stamps["sub/k.tif"] = {1, 1, 1};
            EXPECT_THAT(After(5s), IsEmpty());
            EXPECT_THAT(After(10s), IsEmpty());
            EXPECT_THAT(said, ElementsAre("J.json: waits for /far/m.tif"));

            files.stamps["/far/m.tif"] = {1, 1, 1};
            EXPECT_THAT(After(JobTable::WaitingTime), IsEmpty()) << "it has only just been seen";
            EXPECT_THAT(After(5s), ElementsAre("J: J.json J_C.tif sub/k.tif /far/m.tif"));

            std::vector<std::string> leaving;
            for (const Order::Source& source : table->LeavingWith(orders[0]))
            {
                leaving.push_back(source.name);
            }
            EXPECT_THAT(leaving, ElementsAre("J.json", "J_C.tif", "sub/k.tif"));
        }

        TEST_F(JobTableTest, JobFileTakesItsFilesFromSetsAndGivesThemBack)
        {
            Drop("L_C.tif");
            Drop("L_K.tif");
            files.jobFiles["J.json"] = {{"L_C.tif"}, {}};
            Drop("J.json");
            Remove("J.json");
            EXPECT_THAT(After(5s), ElementsAre("L: L_K.tif L_C.tif"));

            Drop("M_C.tif");
            files.jobFiles["N.json"] = {{}, {"M_*.tif"}};
            Drop("N.json");
            Drop("M_K.tif");
            EXPECT_THAT(After(5s), ElementsAre("N: N.json M_C.tif M_K.tif"));
        }

        TEST_F(JobTableTest, FileOfTwoJobFilesLeavesWithTheLast)
        {
            files.jobFiles["A.json"] = files.jobFiles["B.json"] = {{"k.tif"}, {}};
            Drop("A.json");
            Drop("B.json");
            Drop("k.tif");
            EXPECT_THAT(After(5s), SizeIs(2));
            EXPECT_THAT(table->LeavingWith(orders[0]), SizeIs(1));
            table->Finished(orders[0], {orders[0].sources[0]}, now);
            EXPECT_THAT(table->LeavingWith(orders[1]), SizeIs(2));
        }

        TEST_F(JobTableTest, JobFileFailsWithWhatIsNoTiffAndWaitsForWhatGrows)
        {
            files.jobFiles["J.json"] = {{"k.tif"}, {}};
            Drop("J.json");
            Drop("k.tif");
            files.extents["k.tif"] = TiffExtent::Growing;
            EXPECT_THAT(After(5s), IsEmpty());
            files.extents["k.tif"] = TiffExtent::NoTiff;
            EXPECT_THAT(After(JobTable::WaitingTime), SizeIs(1));
        }

        TEST_F(JobTableTest, WhatComesWhileAJobRunsIsTheNextOne)
        {
            Drop("J_C.tif");
            EXPECT_THAT(After(5s), SizeIs(1));
            Drop("J_K.tif");
            EXPECT_THAT(After(60s), IsEmpty());
            table->Finished(orders[0], orders[0].sources, now);
            EXPECT_THAT(After(5s), ElementsAre("J: J_K.tif"));
        }

        TEST_F(JobTableTest, JobThatIsPutBackSettlesAgain)
        {
            Drop("J_C.tif");
            Drop("P.pdf");
            EXPECT_THAT(After(5s), SizeIs(2));
            table->Again(orders[0], 0ms, now);
            Remove(orders[1].sources[0].name);
            table->Again(orders[1], 60s, now);
            EXPECT_THAT(After(4999ms), IsEmpty());
            EXPECT_THAT(After(1ms), SizeIs(1));
            EXPECT_EQ(table->Busy(), 1U);
        }

        TEST_F(JobTableTest, TenThousandJobsAreLookedAtOnce)
        {
            for (int i = 0; i < 10000; ++i)
            {
                Drop("J" + std::to_string(i) + "_C.tif");
            }
            EXPECT_THAT(After(5s), SizeIs(1000)) << "no more at once than was asked for";
            for (int i = 0; i < 9; ++i)
            {
                After(0s);
            }
            EXPECT_THAT(orders, SizeIs(10000));
            EXPECT_EQ(files.looks, 10000);
        }
    }
}
