// What a dictionary leaves in the job: texts by class, and the state after each failure.
#include "frontend/ParameterIntake.h"
#include "tests/Sheetvane/Failures.h"
#include "tests/Sheetvane/Values.h"

#include <gmock/gmock.h>

namespace SheetvaneTest
{
    using namespace std::string_literals;
    using RasterOutput::CIP3Units;
    using testing::ElementsAre;
    using testing::IsEmpty;
    using testing::Pair;

    namespace
    {
        class ParameterIntake : public testing::Test
        {
        protected:
            std::string Require(unsigned int index, const KX_TDict& parameters)
            {
                return FailureOf([&] { Sheetvane::SetRequiredParameters(sheets, index, parameters); });
            }
            std::string Add(unsigned int index, const KX_TDict& parameters)
            {
                return FailureOf([&] { Sheetvane::SetOptionalParameters(sheets, index, parameters); });
            }
            /// What is stored for a single value.
            std::string Stored(const KX_TAny& value)
            {
                EXPECT_EQ(Add(0, DictOf({{"Key", value}})), "[nothing]");
                return sheet.optionalParameters.at("Key");
            }

            std::vector<Sheetvane::SheetRecord> sheets = std::vector<Sheetvane::SheetRecord>(1);
            RasterOutput::CIP3SheetParameters& sheet = sheets[0].parameters;
        };

        /// A host's own kind of string.
        class Label : public KX_TString
        {
        public:
            Label()
                : KX_TString("label")
            {
            }
            const void* KX_DynamicInfo(const char* typeName) const override
            {
                if (typeName == nullptr)
                {
                    return KX_TClass::GetClassObject(
                        false, "Label", sizeof(Label), KX_TString::KX_ClassObject(), nullptr, nullptr);
                }
                return KX_TString::KX_DynamicInfo(typeName);
            }
        };

        /// A host's dictionary that makes the job grow whenever it is read.
        class GrowingDict : public KX_TDict
        {
        public:
            GrowingDict(std::vector<Sheetvane::SheetRecord>& theSheets, const KX_TDict& content)
                : KX_TDict(content)
                , sheets(theSheets)
            {
            }
            const KX_TString* GetString(const char* key) const override
            {
                Grow();
                return KX_TDict::GetString(key);
            }
            std::unique_ptr<KX_TConstIterator> KX_NewWalk() const override
            {
                Grow();
                return KX_TDict::KX_NewWalk();
            }

        private:
            void Grow() const { sheets.resize(4 * sheets.size()); }

            std::vector<Sheetvane::SheetRecord>& sheets;
        };

        /// A container whose keys are not strings.
        class OddDict : public KX_TDict
        {
        public:
            std::unique_ptr<KX_TConstIterator> KX_NewWalk() const override { return std::make_unique<Walk>(); }

        private:
            class Walk : public KX_TConstIterator
            {
                bool IsDone() const override { return false; }
                const KX_IPackable& Key() const override { return oddKey; }
                const KX_TAny& Value() const override { return value; }
                void Next() override {}

                KX_EException oddKey;
                KX_TAny value;
            };
        };
    }

    TEST_F(ParameterIntake, RequiredNamesAreTakenAndTheUnitBecomesInch)
    {
        KX_TDict parameters = JobAndSheet("Brochure", "S\xC3\xA4");
        parameters.Set("units", KX_TInt32(0));
        EXPECT_EQ(Require(0, parameters), "[nothing]");
        EXPECT_EQ(sheet.jobName, "Brochure");
        EXPECT_EQ(sheet.sheetName, "S\xC3\xA4");
        EXPECT_EQ(sheet.units, CIP3Units::Inch);
        EXPECT_THAT(sheet.optionalParameters, IsEmpty());
    }

    TEST_F(ParameterIntake, SecondCallWithFewerNamesLosesTheEarlierOnes)
    {
        Require(0, JobAndSheet("Brochure", "S1"));
        EXPECT_EQ(Require(0, DictOf({{"CIP3AdmJobName", Text("Fly\0er"s)}})), "[nothing]");
        EXPECT_EQ(sheet.jobName, "Fly");
        EXPECT_EQ(sheet.sheetName, "");
        EXPECT_EQ(Require(0, {}), "[nothing]");
        EXPECT_EQ(sheet.jobName, "");
        EXPECT_EQ(sheet.units, CIP3Units::Inch);
    }

    TEST_F(ParameterIntake, RequiredValueThatIsNoStringFailsAfterWhatWasRead)
    {
        sheet.sheetName = "old";
        const KX_TDict parameters = DictOf({{"CIP3AdmJobName", Text("Flyer")}, {"CIP3AdmSheetName", KX_TInt32(1)}});
        EXPECT_EQ(Require(0, parameters), "Problems reading required input parameters");
        EXPECT_EQ(sheet.jobName, "Flyer");
        EXPECT_EQ(sheet.sheetName, "");
        EXPECT_EQ(sheet.units, CIP3Units::Point);
    }

    TEST_F(ParameterIntake, IndexOutOfBoundsChangesNothing)
    {
        sheet.jobName = "old";
        EXPECT_EQ(Require(1, JobAndSheet("J", "S")), "Sheet index out of bounds");
        EXPECT_EQ(Add(1, {}), "Sheet index out of bounds");
        EXPECT_EQ(Add(UINT_MAX, {}), "Sheet index out of bounds");
        EXPECT_EQ(sheet.jobName, "old");
        sheets.clear();
        EXPECT_EQ(Require(0, {}), "Sheet index out of bounds");
    }

    TEST_F(ParameterIntake, ValuesAreStoredByTheirExactClass)
    {
        EXPECT_EQ(Stored(Text("(proof)\\")), "(proof)\\");
        EXPECT_EQ(Stored(Text("a\0b"s)), "a");
        EXPECT_EQ(Stored(KX_TInt32(3)), "3");
        EXPECT_EQ(Stored(KX_TDouble(0.5)), "0.500000");
        EXPECT_EQ(Stored(KX_TBool(true)), "");
        EXPECT_EQ(Stored(KX_TList()), "");
        EXPECT_EQ(Stored(Label()), "");
    }

    TEST_F(ParameterIntake, ValueAndUnitsAreStoredWithABlankBetween)
    {
        EXPECT_EQ(Stored(DictOf({{"value", KX_TInt32(1)}, {"units", Text("mm")}})), "1 mm");
        EXPECT_EQ(
            Stored(DictOf({{"value", KX_TDouble(12.5)}, {"units", Text("inch")}, {"more", Text("")}})),
            "12.500000 inch");
        EXPECT_EQ(Stored(DictOf({{"value", Text("1")}, {"units", Text("mm")}})), " mm");
        EXPECT_EQ(Stored(DictOf({{"value", KX_TInt32(1)}, {"units", Label()}})), "1 label");
        EXPECT_EQ(Stored(DictOf({{"value", KX_TInt32(1)}})), "");
        EXPECT_EQ(Stored(DictOf({{"units", KX_TInt32(1)}})), "");
    }

    TEST_F(ParameterIntake, OptionalEntriesAreOrderedByBytesAndTheFirstOfEqualKeysStays)
    {
        KX_TDict parameters = DictOf({{"alpha", KX_TInt32(1)}, {"Zeta", KX_TInt32(2)}});
        parameters.Set(Text("Zeta\0a"s), KX_TInt32(3));
        EXPECT_EQ(Add(0, parameters), "[nothing]");
        EXPECT_THAT(sheet.optionalParameters, ElementsAre(Pair("Zeta", "2"), Pair("alpha", "1")));
        EXPECT_EQ(Add(0, {}), "[nothing]");
        EXPECT_THAT(sheet.optionalParameters, IsEmpty());
    }

    TEST_F(ParameterIntake, DictionariesThatAddSheetsWhileTheyAreReadSetTheirOwn)
    {
        GrowingDict parameters(sheets, JobAndSheet("J", "S"));
        EXPECT_EQ(Require(0, parameters), "[nothing]");
        EXPECT_EQ(sheets[0].parameters.jobName, "J");
        EXPECT_EQ(sheets[0].parameters.sheetName, "S");
        EXPECT_EQ(Add(0, parameters), "[nothing]");
        EXPECT_THAT(
            sheets[0].parameters.optionalParameters,
            ElementsAre(Pair("CIP3AdmJobName", "J"), Pair("CIP3AdmSheetName", "S")));
    }

    TEST_F(ParameterIntake, OptionalValueThatFailsLeavesTheEntriesBeforeIt)
    {
        const char text[] = "Problems reading optional input parameters";
        sheet.optionalParameters["old"] = "1";
        const KX_TAny badUnits = DictOf({{"value", KX_TInt32(1)}, {"units", KX_TInt32(1)}});
        EXPECT_EQ(Add(0, DictOf({{"A", KX_TInt32(1)}, {"B", badUnits}, {"C", KX_TInt32(3)}})), text);
        EXPECT_THAT(sheet.optionalParameters, ElementsAre(Pair("A", "1")));
        EXPECT_EQ(Add(0, OddDict()), text);
        EXPECT_THAT(sheet.optionalParameters, IsEmpty());
    }
}
