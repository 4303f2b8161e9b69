// Every allocation of the library made to fail, alone and with all after it: what the host reads, and that the converter, or
// the next one, goes on as if nothing had been.
#include "tests/Sheetvane/Failures.h"
#include "tests/Sheetvane/Values.h"
#include "tests/support/Allocations.h"
#include "tests/support/Folder.h"
#include "tests/support/PlainTiff.h"

#include <Sheetvane/SheetvaneConverter.h>

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <new>

namespace SheetvaneTest
{
    namespace
    {
        using Sheetvane::SheetvaneConverter;

        constexpr char OutOfMemory[] = "[std::exception: std::bad_alloc]";

        enum class Failing
        {
            Alone,
            Lastingly
        };

        struct Outcome
        {
            bool failed = false; ///< an allocation has failed
            std::string text;    ///< as FailureOf has it
        };

        /// What `action` does while its `count`-th allocation fails.
        template <class Action>
        Outcome OutcomeOf(long count, Failing how, Action action)
        {
            struct Order
            {
                Outcome& outcome;
                ~Order()
                {
                    outcome.failed = TestSupport::AllocationHasFailed();
                    TestSupport::AllowAllocations();
                }
            };
            Outcome outcome;
            outcome.text = FailureOf(
                [&]
                {
                    const Order order = {outcome};
                    how == Failing::Alone ? TestSupport::FailOneAllocation(count)
                                          : TestSupport::FailAllocationsFrom(count);
                    action();
                });
            return outcome;
        }

        /// A job of one sheet whose front is in Cyan and back in Black, and the means to write it.
        class Allocations : public testing::TestWithParam<Failing>
        {
        protected:
            Allocations()
            {
                folder.Write(
                    "a separation with a long name.tif",
                    TestSupport::PlainTiff({std::string(40, '\0'), std::string(40, '\x55')}));
                whole = WholeFile();
            }

            void Add(SheetvaneConverter& converter) { converter.AddSheet(fronts, files, backs, files); }
            void Require(SheetvaneConverter& converter) { converter.SetRequiredParameters(0, required); }
            void Choose(SheetvaneConverter& converter) { converter.SetOptionalParameters(0, optional); }
            void Write(SheetvaneConverter& converter) { converter.CreateCIP3File(location); }

            std::string Written(SheetvaneConverter& converter)
            {
                EXPECT_EQ(FailureOf([&] { Write(converter); }), "[nothing]");
                return Content();
            }
            std::string WholeFile()
            {
                SheetvaneConverter converter;
                Add(converter);
                Require(converter);
                Choose(converter);
                return Written(converter);
            }

            /// Empty, too, if there is no such file.
            std::string Content() const
            {
                return std::filesystem::exists(out) ? TestSupport::Folder::BytesOf(out) : "";
            }

            TestSupport::Folder folder;
            const std::string separation = folder / "a separation with a long name.tif";
            const std::string out = folder / "a folder/and one below/out.ppf";
            const KX_TArray fronts = Names({"Cyan, in words that no string holds in itself"});
            const KX_TArray backs = Names({"Black, in words that no string holds in itself"});
            const KX_TArray files = Files({separation});
            const KX_TDict required =
                JobAndSheet("A job of many words for its name", "A sheet of many words for its name");
            const KX_TDict optional = DictOf(
                {{"CIP3AdmMakeAndModelOfThePress", Text("(Press 4, in the hall at the back)")},
                 {"CIP3AdmPaperGrammage", DictOf({{"value", KX_TDouble(135)}, {"units", Text("g")}})}});
            const KX_TURL location = Location(out);
            std::string whole;
        };
        INSTANTIATE_TEST_SUITE_P(
            Failing, Allocations, testing::Values(Failing::Alone, Failing::Lastingly),
            [](const auto& how) { return how.param == Failing::Alone ? "Alone" : "Lastingly"; });
    }

    TEST_P(Allocations, FailedAddSheetLeavesNoSheetOrOneThatCounts)
    {
        long count = 0;
        for (bool failed = true; failed;)
        {
            SheetvaneConverter converter;
            const Outcome outcome = OutcomeOf(++count, GetParam(), [&] { Add(converter); });
            failed = outcome.failed;
            if (outcome.text == OutOfMemory)
            {
                EXPECT_TRUE(GetParam() == Failing::Lastingly || converter.GetNumSheets() == 0) << count;
            }
            else
            {
                EXPECT_EQ(outcome.text, failed ? "Could not convert input data" : "[nothing]") << count;
                EXPECT_EQ(converter.GetNumSheets(), 1u) << count;
            }
            Add(converter);
        }
        EXPECT_GT(count, 5);
        EXPECT_EQ(WholeFile(), whole);
    }

    TEST_P(Allocations, FailedParametersCanBeSetAgain)
    {
        SheetvaneConverter converter;
        Add(converter);
        const auto sweep = [&](const std::string& text, auto action)
        {
            long count = 0;
            for (bool failed = true; failed;)
            {
                const Outcome outcome = OutcomeOf(++count, GetParam(), action);
                failed = outcome.failed;
                const std::string expected = !failed                            ? "[nothing]"
                                             : GetParam() == Failing::Lastingly ? OutOfMemory
                                                                                : text;
                EXPECT_EQ(outcome.text, expected) << count;
            }
            EXPECT_GT(count, 2) << text;
        };
        sweep("Problems reading required input parameters", [&] { Require(converter); });
        sweep("Problems reading optional input parameters", [&] { Choose(converter); });
        EXPECT_EQ(Written(converter), whole);
    }

    TEST_P(Allocations, FailureOfAnotherKindKeepsItsTextWhereOneAllocationFailsOnTheWay)
    {
        SheetvaneConverter converter;
        long count = 0;
        for (bool failed = true; failed;)
        {
            const Outcome outcome = OutcomeOf(++count, GetParam(), [&] { Require(converter); });
            failed = outcome.failed;
            const bool isLost = failed && GetParam() == Failing::Lastingly;
            EXPECT_EQ(outcome.text, isLost ? OutOfMemory : "Sheet index out of bounds") << count;
        }
        EXPECT_GT(count, 2);
    }

    TEST_P(Allocations, FailedConversionCanBeRepeated)
    {
        SheetvaneConverter converter;
        Add(converter);
        Require(converter);
        Choose(converter);
        long count = 0;
        for (bool failed = true; failed;)
        {
            std::filesystem::remove_all(folder / "a folder");
            const Outcome outcome = OutcomeOf(++count, GetParam(), [&] { Write(converter); });
            failed = outcome.failed;
            EXPECT_THAT(
                outcome.text,
                testing::AnyOf(
                    OutOfMemory, "Error creating folder for CIP3 file", "Could not open CIP3 file",
                    "Could not make painter CIP3Painter", "Problem converting TIFF files to CIP3", "[nothing]"))
                << count;
            EXPECT_EQ(Content(), outcome.text == "[nothing]" ? whole : "") << count;
            EXPECT_EQ(Written(converter), whole) << count;
        }
        EXPECT_GT(count, 20);
    }

    // Whatever is made once in a process is made by the first converter: each case has a process of its own.
    TEST(FirstConverterDeathTest, FailedAllocationLeavesTheNextConverterWhole)
    {
        constexpr int NoneFailed = 2;
        constexpr int OneFailed = 3;
        const auto construct = [](long count, Failing how)
        {
            const Outcome outcome = OutcomeOf(count, how, [] { const SheetvaneConverter converter; });
            SheetvaneConverter next;
            const std::string refusal = FailureOf([&] { next.AddSheet({}, {}, {}, {}); });
            const bool expected =
                refusal == "No input files specified" && (outcome.text == "[nothing]" || outcome.text == OutOfMemory);
            std::_Exit(!expected ? 1 : outcome.failed ? OneFailed : NoneFailed);
        };
        for (const Failing how : {Failing::Alone, Failing::Lastingly})
        {
            long count = 0;
            for (bool failed = true; failed;)
            {
                const auto ended = [&](int status)
                {
                    failed = WIFEXITED(status) && WEXITSTATUS(status) == OneFailed;
                    return failed || (WIFEXITED(status) && WEXITSTATUS(status) == NoneFailed);
                };
                ++count;
                EXPECT_EXIT(construct(count, how), ended, "^$") << count;
            }
            EXPECT_GT(count, 10);
        }
    }
}
