// What four arrays leave in the job, and the state after each failure.
#include "frontend/SheetIntake.h"
#include "tests/Sheetvane/Failures.h"
#include "tests/Sheetvane/Values.h"

#include <gmock/gmock.h>

namespace SheetvaneTest
{
    using namespace std::string_literals;
    using testing::ElementsAre;
    using testing::IsEmpty;

    namespace
    {
        /// A host's array that makes the job grow whenever an element is read.
        class GrowingArray : public KX_TArray
        {
        public:
            GrowingArray(std::vector<Sheetvane::SheetRecord>& theSheets, const KX_TArray& content)
                : KX_TArray(content)
                , sheets(theSheets)
            {
            }
            const KX_TAny& At(std::uint32_t index) const override
            {
                sheets.resize(4 * sheets.size());
                return KX_TArray::At(index);
            }

        private:
            std::vector<Sheetvane::SheetRecord>& sheets;
        };

        class SheetIntake : public testing::Test
        {
        protected:
            std::string
            Add(const KX_TArray& frontNames, const KX_TArray& frontFiles, const KX_TArray& backNames = {},
                const KX_TArray& backFiles = {})
            {
                return FailureOf([&] { Sheetvane::AddSheet(sheets, frontNames, frontFiles, backNames, backFiles); });
            }

            std::vector<Sheetvane::SheetRecord> sheets;
        };
    }

    TEST_F(SheetIntake, BothSidesAreTakenInOrder)
    {
        EXPECT_EQ(
            Add(Names({"Cyan", "Black"}), Files({"c.tif", "k.tif"}), Names({"Red"}), Files({"./r"})), "[nothing]");
        ASSERT_EQ(sheets.size(), 1u);
        EXPECT_THAT(sheets[0].frontSeparationNames, ElementsAre("Cyan", "Black"));
        EXPECT_THAT(sheets[0].frontFilePaths, ElementsAre("c.tif", "k.tif"));
        EXPECT_THAT(sheets[0].backSeparationNames, ElementsAre("Red"));
        EXPECT_THAT(sheets[0].backFilePaths, ElementsAre("./r"));
        EXPECT_EQ(sheets[0].parameters.units, RasterOutput::CIP3Units::Point);
    }

    TEST_F(SheetIntake, TextIsCutAtAZeroByteAndMayBeEmpty)
    {
        const std::string name = "Cy\0an"s;
        const std::string path = "a.tif\0.tif"s;
        EXPECT_EQ(Add(ArrayOf({Text(name), Text("")}), Files({path, "\xFF"})), "[nothing]");
        EXPECT_THAT(sheets[0].frontSeparationNames, ElementsAre("Cy", ""));
        EXPECT_THAT(sheets[0].frontFilePaths, ElementsAre("a.tif", "\xFF"));
    }

    TEST_F(SheetIntake, WrongElementFailsAndTheListsBeforeItStay)
    {
        const char text[] = "Could not convert input data";
        EXPECT_EQ(Add(ArrayOf({Text("Cyan"), KX_TInt32(1)}), Files({"c.tif", "k.tif"})), text);
        EXPECT_EQ(Add(Names({"Cyan"}), ArrayOf({Text("c.tif")})), text);
        EXPECT_EQ(
            Add(Names({"Cyan"}), Files({"c.tif"}), Names({"Red"}), ArrayOf({Location("r.tif"), KX_TURL()})), text);
        ASSERT_EQ(sheets.size(), 3u);
        EXPECT_THAT(sheets[0].frontSeparationNames, IsEmpty());
        EXPECT_THAT(sheets[0].frontFilePaths, IsEmpty());
        EXPECT_THAT(sheets[1].frontSeparationNames, ElementsAre("Cyan"));
        EXPECT_THAT(sheets[1].frontFilePaths, IsEmpty());
        EXPECT_THAT(sheets[2].backSeparationNames, ElementsAre("Red"));
        EXPECT_THAT(sheets[2].backFilePaths, IsEmpty());
    }

    TEST_F(SheetIntake, NoFileFailsBeforeNamesAreCompared)
    {
        EXPECT_EQ(Add({}, {}), "No input files specified");
        EXPECT_EQ(Add(Names({"Cyan"}), {}), "No input files specified");
        ASSERT_EQ(sheets.size(), 2u);
        EXPECT_THAT(sheets[1].frontSeparationNames, ElementsAre("Cyan"));
    }

    TEST_F(SheetIntake, NamesThatDoNotMatchFilesFailAndStay)
    {
        const char text[] = "Separation names do not match file paths";
        EXPECT_EQ(Add(Names({"Cyan"}), Files({"c.tif"}), Names({"Red", "Gold"}), Files({"r.tif"})), text);
        EXPECT_EQ(Add(Names({}), Files({"c.tif"})), text);
        ASSERT_EQ(sheets.size(), 2u);
        EXPECT_THAT(sheets[0].backSeparationNames, ElementsAre("Red", "Gold"));
        EXPECT_THAT(sheets[0].backFilePaths, ElementsAre("r.tif"));
    }

    TEST_F(SheetIntake, ArraysThatAddSheetsWhileTheyAreReadFillTheirOwn)
    {
        const GrowingArray names(sheets, Names({"Cyan"}));
        const GrowingArray files(sheets, Files({"c.tif"}));
        EXPECT_EQ(Add(names, files, names, files), "[nothing]");
        ASSERT_EQ(sheets.size(), 256u);
        EXPECT_THAT(sheets[0].frontSeparationNames, ElementsAre("Cyan"));
        EXPECT_THAT(sheets[0].frontFilePaths, ElementsAre("c.tif"));
        EXPECT_THAT(sheets[0].backSeparationNames, ElementsAre("Cyan"));
        EXPECT_THAT(sheets[0].backFilePaths, ElementsAre("c.tif"));
    }
}
