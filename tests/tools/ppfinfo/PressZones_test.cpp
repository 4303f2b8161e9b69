// The zones of a press: against exact fractions, in every form of output, and where they cannot be.

#include "ppfinfo/Zones.h"
#include "tests/cip3output/PlainLoops.h"
#include "tests/tools/ppf/Files.h"
#include "tests/tools/ppfinfo/Program.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <numeric>
#include <random>

namespace PpfInfoTest
{
    using namespace PpfInfo;

    namespace
    {
        using PpfTest::FrontOf;
        using PpfTest::HexPixels;
        using PpfTest::Separation;
        using PpfTest::TwoSheets;
        using testing::DoubleNear;
        using testing::ElementsAre;
        using testing::HasSubstr;
        using testing::Not;
        using testing::Pointwise;

        /// Whole numbers that are exact for the sizes of these tests.
        using Whole = std::int64_t;

        /// A sheet of single columns at 72 pixels per inch, whose first row is `inks` and second paper, under a press whose
        /// lengths are in hundredths of a point.
        struct Press
        {
            std::vector<int> inks;
            int count;
            int width;
            std::optional<int> offset;
        };

        /// The per cents by whole numbers alone: a column is 200 half-hundredths wide.
        std::vector<double> ExactZones(const Press& press)
        {
            constexpr Whole Column = 200;
            const Whole columns = static_cast<Whole>(press.inks.size()) * Column;
            const Whole sheet =
                press.offset ? Whole{*press.offset} * 2 : (Whole{press.count} * press.width * 2 - columns) / 2;
            std::vector<double> zones;
            for (int zone = 0; zone < press.count; ++zone)
            {
                const Whole left = Whole{zone} * press.width * 2 - sheet;
                const Whole right = left + Whole{press.width} * 2;
                Whole ink = 0;
                for (std::size_t i = 0; i < press.inks.size(); ++i)
                {
                    const Whole begin = static_cast<Whole>(i) * Column;
                    const Whole part = std::min(right, begin + Column) - std::max(left, begin);
                    ink += part > 0 ? part * press.inks[i] : 0;
                }
                zones.push_back(static_cast<double>(ink * 100) / static_cast<double>((right - left) * 255 * 2));
            }
            return zones;
        }

        std::string FileOf(const std::vector<int>& inks)
        {
            const std::string row = PlainLoops::ASCIIHex(std::string(inks.begin(), inks.end()));
            const std::string paper(row.size(), '0');
            return FrontOf("(K)", HexPixels(static_cast<int>(inks.size()), 2, row + paper + ">"));
        }

        std::string Points(int hundredths)
        {
            return std::to_string(hundredths / 100) + "." + std::to_string(hundredths % 100 / 10) +
                   std::to_string(hundredths % 10) + "point";
        }

        std::vector<std::string> ArgumentsOf(const Press& press)
        {
            std::vector<std::string> arguments = {
                "--zones", std::to_string(press.count), "--zone-width", Points(press.width)};
            if (press.offset)
            {
                arguments.push_back("--zone-offset");
                arguments.push_back((*press.offset < 0 ? "-" : "") + Points(std::abs(*press.offset)));
            }
            return arguments;
        }

        TEST(PressZones, AreThoseOfExactFractions)
        {
            std::minstd_rand random(3);
            const auto any = [&](int least, int most)
            { return least + static_cast<int>(random() >> 4) % (most - least + 1); };
            for (int run = 0; run < 200; ++run)
            {
                Press press = {std::vector<int>(static_cast<std::size_t>(any(1, 40))), any(1, 12), any(30, 900), {}};
                std::generate(press.inks.begin(), press.inks.end(), [&] { return any(0, 255); });
                if (run % 2 == 1)
                {
                    press.offset = any(-2000, 2000);
                }
                std::vector<std::string> arguments = ArgumentsOf(press);
                arguments.push_back("--json");
                const Outcome outcome = RunOn(FileOf(press.inks), arguments);
                ASSERT_EQ(outcome.status, 0) << outcome.error << testing::PrintToString(arguments);
                const auto json = nlohmann::json::parse(outcome.out);
                const std::vector<double> zones = json["sheets"][0]["surfaces"][0]["separations"][0]["zones"];
                EXPECT_THAT(zones, Pointwise(DoubleNear(1e-9), ExactZones(press))) << testing::PrintToString(arguments);
            }
        }

        TEST(PressZones, SheetLiesInTheMiddleOrByItsOffset)
        {
            // 50.8 mm under four zones of 25.4 mm.
            const std::string middle = RunOn(TwoSheets(), {"--zones", "4", "--zone-width", "1inch"}).out;
            EXPECT_THAT(
                middle, HasSubstr("   1       0.0      25.4     0.00\n"
                                  "   2      25.4      50.8    50.00\n"
                                  "   3      50.8      76.2    87.45\n"
                                  "   4      76.2     101.6     0.00\n"));
            EXPECT_THAT(middle, Not(HasSubstr("Unusual")));
            const std::string right =
                RunOn(TwoSheets(), {"--zones", "4", "--zone-width", "1inch", "--zone-offset", "2inch"}).out;
            EXPECT_THAT(
                right, HasSubstr("   2      25.4      50.8     0.00\n"
                                 "   3      50.8      76.2    50.00\n"));
        }

        TEST(PressZones, WhatLiesOutsideIsSaidOnceForASide)
        {
            const std::string inks = HexPixels(72, 1, std::string(144, 'f') + ">");
            const std::string bytes = FrontOf("(A) (B)", inks + inks);
            const Outcome outcome = RunOn(bytes, {"--zones", "2", "--zone-width", "10mm", "--zone-offset", "-2mm"});
            EXPECT_EQ(outcome.status, 0);
            EXPECT_THAT(
                outcome.out,
                HasSubstr("\nUnusual\n  byte 517: 2.0 mm at the left and 3.4 mm at the right of the front of "
                          "sheet 1 lie outside the ink zones, and their ink is not counted\n"));
            EXPECT_EQ(outcome.out.find("lie outside"), outcome.out.rfind("lie outside"));
        }

        TEST(PressZones, WithoutAResolutionAreRefusedBeforeAnythingIsWritten)
        {
            std::string bytes = TwoSheets();
            bytes.replace(bytes.find("/CIP3PreviewImageResolution"), 6, "/CIP4A");
            const Folder folder;
            const std::vector<std::vector<std::string>> refused = {
                {"--zones", "4", "--zone-width", "1inch"},
                {"--zones", "4", "--zone-width", "1inch", "--json"},
                {"--zones", "4", "--zone-width", "1inch", "--report", folder / "r.html"},
                {"--csv"},
                {"--csv", "--zone-width", "1inch"},
                {"--jdf", folder / "j.jdf", "--zones", "4"},
                {"--xjdf", folder / "x.xjdf", "--zones", "4"}};
            for (const std::vector<std::string>& arguments : refused)
            {
                const Outcome outcome = RunOn(bytes, arguments);
                EXPECT_EQ(outcome.status, 1) << testing::PrintToString(arguments);
                EXPECT_EQ(outcome.out, "") << testing::PrintToString(arguments);
                EXPECT_THAT(outcome.error, HasSubstr("byte 1209: separation \"Black\" has no resolution"))
                    << testing::PrintToString(arguments);
            }
            EXPECT_THAT(folder.Names(), ElementsAre());
            // The number of zones alone asks for no millimetres.
            const Outcome number = RunOn(bytes, {"--csv", "--zones", "1"});
            EXPECT_EQ(number.status, 0);
            EXPECT_THAT(number.out, HasSubstr("1,S1,front,Black,1,,,68.7255\r\n"));
        }

        TEST(PressZones, PicturesOfTheReportLieWhereTheSheetDoes)
        {
            const std::string page =
                ReportOf(TwoSheets(), {"--zones", "4", "--zone-width", "1inch", "--zone-offset", "3inch"});
            // In columns, of which a zone has two: six of the press left of the sheet, four of the sheet, two of them beyond.
            EXPECT_THAT(page, HasSubstr("viewBox=\"-6.000 0 10.000 2.000\"><rect class=\"paper\" width=\"4\""));
            EXPECT_THAT(page, HasSubstr("25.4 mm at the right of the front of sheet 1 lie outside"));
            EXPECT_THAT(page, HasSubstr("zone 4 (76.2 to 101.6 mm): 50.00 %"));
        }
    }
}
