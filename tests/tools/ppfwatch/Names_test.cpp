// The pattern of names, and the order of the sheets that it finds.
#include "host/Failure.h"
#include "ppfwatch/NamePattern.h"
#include "ppfwatch/NaturalOrder.h"
#include "tests/support/Failures.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace PpfWatchTest
{
    namespace
    {
        using namespace PpfWatch;
        using ::testing::ElementsAre;
        using ::testing::HasSubstr;

        /// "job|sheet|side|ink"; empty if the name does not fit.
        std::string Fields(const std::string& pattern, const std::string& name)
        {
            const auto found = NamePattern(pattern).Match(name);
            return found ? found->job + '|' + found->sheet + '|' + (found->isBack ? "back" : "front") + '|' + found->ink
                         : "";
        }

        TEST(NamePatternTest, JobTakesAsMuchAsItCan)
        {
            const std::string usual = "{job}_{sheet}_{side}_{ink}.tif";
            EXPECT_EQ(Fields(usual, "J_S1_front_C.tif"), "J|S1|front|C");
            EXPECT_EQ(Fields(usual, "A_B.c_S1_B_Orange 021.tif"), "A_B.c|S1|back|Orange 021");
            EXPECT_EQ(Fields(usual, "J\xFF_S\n_FRONT_\xC3.tif"), "J\xFF|S\n|front|\xC3");
            EXPECT_EQ(Fields("{ink}{job}.tif", "Cab.tif"), "ab||front|C");
            EXPECT_EQ(Fields("{job}.{ink}", "a.b.c"), "a.b||front|c");
            EXPECT_EQ(Fields("{ink}-{job}.tif", "C-a-b.tif"), "a-b||front|C");
            EXPECT_EQ(Fields("{job}_{side}{ink}.tif", "J_frontC.tif"), "J||front|C");
            EXPECT_EQ(Fields("{job}_{side}{ink}.tif", "J_bC.tif"), "J||back|C");
        }

        TEST(NamePatternTest, WhatDoesNotFitHasNoFields)
        {
            const std::string usual = "{job}_{sheet}_{side}_{ink}.tif";
            for (const std::string name :
                 {"J_S1_front_C.tiff", "J_S1_front_C.TIF", "J_S1_left_C.tif", "_S1_front_C.tif", "J__front_C.tif",
                  "J_S1_front_.tif", "J_front_C.tif", "J_S1_front_C.x.tif", ""})
            {
                EXPECT_EQ(Fields(usual, name), "") << name;
            }
        }

        TEST(NamePatternTest, WrongPatternIsRefused)
        {
            for (const auto& [pattern, why] : std::vector<std::pair<std::string, std::string>>{
                     {"{job}.tif", "{ink} is missing"},
                     {"{ink}", "{job} is missing"},
                     {"{job}{job}{ink}", "{job} is repeated"},
                     {"{job}{colour}", "no field {colour}"},
                     {"{job}_{ink", "braces"},
                     {"{job}}{ink}", "braces"},
                     {"{job}/{ink}", "no \"/\""}})
            {
                const auto take = [text = pattern] { NamePattern refused(text); };
                EXPECT_THAT(TestSupport::FailureOf<Host::UsageError>(take), HasSubstr(why)) << pattern;
            }
        }

        TEST(NamePatternTest, UnfinishedAndHiddenFilesAreLeftAlone)
        {
            for (const char* const name : {".x.tif", "x.tif.part", "x.tmp", "x.tif~", "error.txt"})
            {
                EXPECT_TRUE(IsLeftAlone(name)) << name;
            }
            EXPECT_FALSE(IsLeftAlone("part.tif"));
            EXPECT_FALSE(IsJobName(".."));
            EXPECT_FALSE(IsJobName(std::string(241, 'x')));
            EXPECT_TRUE(IsJobName(std::string(240, 'x')));
        }

        TEST(NaturalOrderTest, SheetsAreInNaturalOrder)
        {
            std::vector<std::string> sheets = {"S10",   "S2b",  "",  "S2",     "S02",
                                               "S9.10", "S9.9", "T", "S1\xFF", "99999999999999999999"};
            std::sort(sheets.begin(), sheets.end(), &IsNaturallyBefore);
            EXPECT_THAT(
                sheets,
                ElementsAre("", "99999999999999999999", "S1\xFF", "S02", "S2", "S2b", "S9.9", "S9.10", "S10", "T"));
        }
    }
}
