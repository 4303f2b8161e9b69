// What the program writes beside its output: pictures and the report.

#include "tests/tools/ppf/Files.h"
#include "tests/tools/ppfinfo/Program.h"

#include <gmock/gmock.h>
#include <png.h>

#include <sys/resource.h>

namespace PpfInfoTest
{
    namespace
    {
        using PpfTest::FrontOf;
        using PpfTest::HexPixels;
        using PpfTest::Separation;
        using PpfTest::TwoSheets;
        using testing::ElementsAre;
        using testing::HasSubstr;
        using testing::IsEmpty;
        using testing::Not;

        std::size_t CountOf(const std::string& text, const std::string& word)
        {
            std::size_t count = 0;
            for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1))
            {
                ++count;
            }
            return count;
        }

        TEST(Extract, PicturesHaveInkAsDarkAndNamesThatEveryFileSystemTakes)
        {
            const Folder folder;
            const std::string bytes = FrontOf(
                "(Cyan) (../Gr\xFCn (1))",
                HexPixels(2, 2, "ff00 0102>", "/CIP3PreviewImageResolution [254 508] def\n") +
                    HexPixels(2, 1, "4001>"));
            EXPECT_EQ(RunOn(bytes, {"--extract", folder / "new/pictures"}).status, 0);
            const std::string cyan = folder.Read("new/pictures/1-front-01-Cyan.png");
            EXPECT_THAT(SamplesOf(cyan, PNG_FORMAT_GRAY), ElementsAre(0, 255, 0xFE, 0xFD));
            EXPECT_EQ(cyan.substr(24, 2), std::string("\x08\0", 2)) << "8 bits, grey";
            // 10000 and 20000 pixels per metre, unit 1.
            EXPECT_THAT(cyan, HasSubstr(std::string("pHYs\0\0\x27\x10\0\0\x4E\x20\1", 13)));
            EXPECT_THAT(
                SamplesOf(folder.Read("new/pictures/1-front-02-.._Gr_n__1_.png"), PNG_FORMAT_GRAY),
                ElementsAre(0xBF, 0xFE));
        }

        TEST(Extract, SheetsSidesAndSectionsOfOneSideAreCounted)
        {
            const Folder folder;
            std::string bytes = FrontOf("(A)", HexPixels(1, 1, "00>"));
            const std::size_t begin = bytes.find("CIP3BeginFront");
            const std::string side = bytes.substr(begin, bytes.find("CIP3EndSheet") - begin);
            bytes.insert(begin, side);
            EXPECT_EQ(RunOn(bytes, {"--extract", folder.Path()}).status, 0);
            EXPECT_EQ(RunOn(TwoSheets(), {"--extract", folder.Path()}).status, 0);
            EXPECT_THAT(
                folder.Names(),
                ElementsAre("1-front-01-A.png", "1-front-01-Black.png", "1-front-02-A.png", "2-back-01-Black.png"));
        }

        TEST(Extract, DamagedPreviewLeavesNoFile)
        {
            const Folder folder;
            const std::string bytes =
                FrontOf("(A) (B) (C)", HexPixels(1, 2, "ff00>") + HexPixels(1, 2, "ff?>") + HexPixels(1, 2, "00ff>"));
            const Outcome outcome = RunOn(bytes, {"--extract", folder.Path()});
            EXPECT_EQ(outcome.status, 1);
            EXPECT_THAT(outcome.error, HasSubstr("character that is not a digit"));
            EXPECT_THAT(folder.Names(), ElementsAre("1-front-01-A.png", "1-front-03-C.png"));
        }

        TEST(Extract, WidthThatTheDataCannotHoldTakesNoMemory)
        {
            const Folder folder;
            const std::string bytes = FrontOf("(K)", HexPixels(2147483647, 1, "00>"));
            const std::string file = folder.Write("job.ppf", bytes);
            struct rusage before = {};
            struct rusage after = {};
            ASSERT_EQ(getrusage(RUSAGE_SELF, &before), 0);
            const Outcome outcome = RunWith({"--extract", folder / "out", file});
            ASSERT_EQ(getrusage(RUSAGE_SELF, &after), 0);
            // In KiB.
            EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 200000);
            EXPECT_THAT(outcome.error, HasSubstr("which cannot hold it"));
        }

        TEST(Extract, PlaceThatIsNoFolderIsAFailure)
        {
            const Folder folder;
            const std::string file = folder.Write("file", "");
            EXPECT_THAT(
                RunOn(TwoSheets(), {"--extract", file + "/x"}).error,
                HasSubstr("file cannot be made: Not a directory"));
        }

        TEST(HtmlReport, PageStandsAloneAndShowsEverySide)
        {
            const std::string bytes = FrontOf(
                "(Cyan) (PANTONE 485 C)", Separation(40, 2, "RunLengthDecode", "ASCIIHexDecode", "d9ff d980 80>") +
                                              HexPixels(40, 2, std::string(160, '0') + ">"));
            const std::string page = ReportOf(bytes, {"--zones", "4"});
            EXPECT_EQ(CountOf(page, "<image "), 2u);
            EXPECT_EQ(CountOf(page, "href=\"data:image/png;base64,"), 2u);
            EXPECT_EQ(CountOf(page, "class=\"bar\""), 16u);
            EXPECT_THAT(page, HasSubstr("<title>Cyan, zone 2 (3.5 to 7.1 mm): 75.10 %</title>"));
            EXPECT_THAT(page, HasSubstr("separation &quot;PANTONE 485 C&quot; has no ink"));
            for (const char* const outside : {"<script", "http:", "https:", "<link", "<img", "@import", "url("})
            {
                EXPECT_THAT(page, Not(HasSubstr(outside)));
            }
            for (const char* const element : {"section", "figure", "svg", "table", "div", "html", "g", "tr", "dl"})
            {
                const std::string name(element);
                EXPECT_EQ(
                    CountOf(page, "<" + name + ">") + CountOf(page, "<" + name + " "), CountOf(page, "</" + name + ">"))
                    << name;
            }
        }

        TEST(HtmlReport, EveryInkHasASwitchALayerAndItsBars)
        {
            const std::string plain = HexPixels(2, 1, "ff00>");
            const std::string bytes = FrontOf("(A) (B) (C)", plain + HexPixels(2, 1, "ff?0>") + plain);
            const std::string page = ReportOf(bytes, {"--zones", "2"}, 1);
            EXPECT_EQ(CountOf(page, "<input type=\"checkbox\" checked>"), 3u);
            // An ink that cannot be decoded has an empty layer, so that the others keep their numbers.
            const std::size_t layers = page.find("<g class=\"layers\">");
            EXPECT_EQ(CountOf(page.substr(layers, page.find("</g></svg>", layers) - layers), "\n<g>"), 3u);
            const std::size_t bars = page.find("<g class=\"bars\">");
            EXPECT_EQ(CountOf(page.substr(bars, page.find("</svg>", bars) - bars), "<g fill="), 3u);
            for (const char* const ink : {"1", "2", "3"})
            {
                const std::string child = ":nth-child(" + std::string(ink) + ")";
                EXPECT_EQ(
                    CountOf(
                        page, ".overview:has(.inks tbody tr" + child +
                                  " input:not(:checked)) .stage :is(.layers,.bars)>" + child + "{display:none}"),
                    1u)
                    << ink;
            }
            EXPECT_EQ(CountOf(page, "<use href=\"#ink-1\"/>"), 2u) << "on its own, and large";
            EXPECT_EQ(CountOf(page, "id=\"ink-1\""), 1u);
            EXPECT_EQ(CountOf(page, "id=\"large-ink-1\""), 1u);
            EXPECT_EQ(CountOf(page, "ink-2\""), 0u);
        }

        TEST(HtmlReport, TotalAndHighestSpotAreThoseOfAllInks)
        {
            const std::string bytes = FrontOf("(A) (B)", HexPixels(2, 2, "ff80 0040>") + HexPixels(2, 2, "00cc 0040>"));
            const std::string page = ReportOf(bytes);
            // 51.27 + 20 + 6.27 per cent of ink in four pixels, and 128 + 204 of 255 in the second one of the first row.
            EXPECT_THAT(page, HasSubstr("Total area coverage</th><td>70.10 %"));
            EXPECT_THAT(page, HasSubstr("0.5 mm from the left, 0.2 mm from the top</span></th><td>130.20 %"));
        }

        TEST(HtmlReport, ZonesAreOfAUsualWidthOrElseOfAUsualNumber)
        {
            // 288 pixels at 72 per inch are 101.6 mm: three zones of 32.5 mm and one that is narrower.
            std::string bytes = FrontOf(
                "(C) (M) (Y) (K)",
                Separation(
                    288, 1, "RunLengthDecode", "ASCIIHexDecode", "81ff 81ff 81ff 81ff 81ff 81ff 81ff 81ff 81ff 80>",
                    "/CIP3PreviewImageComponents 4 def\n"));
            const std::string page = ReportOf(bytes);
            EXPECT_EQ(CountOf(page, "class=\"bar\""), 2u * 4 * 4);
            EXPECT_THAT(page, HasSubstr("zone 4 (97.5 to 101.6 mm): 100.00 %"));
            bytes.erase(bytes.find("/CIP3PreviewImageResolution"), 40);
            EXPECT_EQ(CountOf(ReportOf(bytes), "class=\"bar\""), 2u * 4 * 32);
        }

        TEST(HtmlReport, ZonesThatCannotBeAreSaidAndThePageGoesOn)
        {
            const std::string page = ReportOf(TwoSheets(), {"--zone-width", "1e-9mm"}, 1);
            EXPECT_EQ(CountOf(page, "give a greater --zone-width"), 2u);
            EXPECT_EQ(CountOf(page, "class=\"chart\""), 0u);
            EXPECT_EQ(CountOf(page, "aria-label=\"All inks over each other\""), 2u);
        }

        TEST(HtmlReport, TextOfTheFileIsNoMarkup)
        {
            std::string bytes = FrontOf("(<script>'\"&)", HexPixels(1, 1, "00>"));
            bytes.replace(bytes.find("(Job) def"), 9, "(</title><b>) def /<i>x (<img src=x>) def");
            ReportOf(bytes, {}, 1); // a key cannot hold <
            bytes.replace(bytes.find("/<i>x"), 5, "/x'&y");
            const std::string page = ReportOf(bytes);
            EXPECT_THAT(page, Not(HasSubstr("<script")));
            EXPECT_THAT(page, Not(HasSubstr("<b>)")));
            EXPECT_THAT(page, Not(HasSubstr("<img src=x")));
            EXPECT_THAT(page, HasSubstr("&lt;script&gt;&#39;&quot;&amp;"));
            EXPECT_THAT(page, HasSubstr("x&#39;&amp;y"));
        }

        TEST(HtmlReport, DamageIsShownInItsPlaceAndFailsTheRun)
        {
            std::string bytes = FrontOf("(A) (B)", HexPixels(1, 2, "ff00>") + HexPixels(1, 2, "ff?>"));
            bytes.resize(bytes.find("CIP3EndSheet"));
            const std::string page = ReportOf(bytes, {}, 1);
            EXPECT_THAT(page, HasSubstr("<div class=\"broken\">ASCIIHex data holds a character that is not a digit"));
            EXPECT_THAT(page, HasSubstr("nothing after this byte was read"));
            EXPECT_EQ(CountOf(page, "<image "), 1u);
        }

        TEST(HtmlReport, AnotherPrintFileIsNotTakenForThePage)
        {
            const Folder folder;
            const std::string other = folder.Write("other.ppf", TwoSheets());
            const Outcome outcome = RunOn(TwoSheets(), {"--report", other});
            EXPECT_EQ(outcome.status, 1);
            EXPECT_THAT(outcome.error, HasSubstr("name the output"));
            EXPECT_EQ(folder.Read("other.ppf"), TwoSheets());
        }
    }
}
