#include "ppf/DocumentReader.h"
#include "ppf/Expectation.h"
#include "tests/tools/ppf/Files.h"

#include <gmock/gmock.h>

namespace PpfTest
{
    using namespace Ppf;

    namespace
    {
        using testing::ElementsAre;
        using testing::IsEmpty;

        std::vector<ExpectedSheet> TwoSheetsExpected()
        {
            return {{"J", "S1", {{Side::Front, {{"Black", 4, 2}}}}}, {"J", "S2", {{Side::Back, {{"Black"}}}}}};
        }

        std::vector<std::string> Differences(const std::vector<ExpectedSheet>& sheets)
        {
            const std::string bytes = TwoSheets();
            std::vector<std::string> texts;
            for (const Finding& finding : CheckAgainst(ReadDocument(bytes, NoLimits), sheets))
            {
                texts.push_back(Text(finding));
            }
            return texts;
        }

        TEST(Expectation, EveryDifferenceIsSaidWithItsPlace)
        {
            std::vector<ExpectedSheet> sheets = TwoSheetsExpected();
            EXPECT_THAT(Differences(sheets), IsEmpty());
            sheets[0].jobName = "K";
            sheets[0].sides[0].separations[0] = {"Cyan", 5, 2};
            sheets[1].sheetName.clear();
            sheets[1].sides[0].side = Side::Front;
            sheets[1].sides[0].separations.push_back({"Gold"});
            EXPECT_THAT(
                Differences(sheets),
                ElementsAre(
                    "601: job is \"J\" in place of \"K\"", "1209: separation is \"Black\" in place of \"Cyan\"",
                    "1209: separation \"Cyan\" has 4 x 2 pixels in place of 5 x 2 pixels",
                    "1313: sheet is \"S2\" in place of \"\"", "1518: side is \"back\" in place of \"front\"",
                    "1518: back has 1 separations in place of 2"));
            sheets = TwoSheetsExpected();
            sheets[1].sides.clear();
            sheets.pop_back();
            sheets[0].sides.push_back({});
            EXPECT_THAT(
                Differences(sheets),
                ElementsAre("601: sheet has 1 sides in place of 2", "2038: file has 2 sheets in place of 1"));
        }
    }
}
