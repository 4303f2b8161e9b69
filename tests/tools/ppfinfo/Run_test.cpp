// The program as a whole: what stands on standard output, the one error line, and the exit status.

#include "host/Descriptor.h"
#include "ppfinfo/Run.h"
#include "tests/support/Failures.h"
#include "tests/tools/ppf/Files.h"
#include "tests/tools/ppfinfo/Program.h"

#include <gmock/gmock.h>

#include <fcntl.h>

namespace PpfInfoTest
{
    using namespace PpfInfo;

    namespace
    {
        using PpfTest::FrontOf;
        using PpfTest::HexPixels;
        using PpfTest::Separation;
        using PpfTest::TwoSheets;
        using testing::ContainsRegex;
        using testing::HasSubstr;
        using testing::Not;
        using testing::StartsWith;

        /// The second separation is broken in its third pixel.
        std::string BrokenSecond()
        {
            return FrontOf("(Cyan) (Gold)", HexPixels(2, 2, "ff00ff00>") + HexPixels(2, 2, "0000?000>"));
        }

        TEST(Run, TextShowsSheetsSidesAndInksAtAGlance)
        {
            const Outcome outcome = RunOn(TwoSheets(), {});
            EXPECT_EQ(outcome.status, 0);
            EXPECT_EQ(outcome.error, "");
            EXPECT_THAT(outcome.out, StartsWith("job.ppf: print production file, version 3.0, 2 sheets, 2039 bytes\n"));
            EXPECT_THAT(outcome.out, HasSubstr("\nSheet 2, \"S2\"\n"));
            EXPECT_THAT(outcome.out, HasSubstr("back: 1 ink, 4 x 2 pixels, 50.8 x 25.4 mm, 2 ppi\n"));
            EXPECT_THAT(
                outcome.out,
                ContainsRegex(" Black +68.73 %  ##################  +18 bytes, RunLengthDecode, ASCIIHexDecode\n"));
            EXPECT_THAT(outcome.out, Not(HasSubstr("Unusual")));
        }

        TEST(Run, TextSaysWhatIsUnusual)
        {
            const std::string bytes = FrontOf(
                "(Cyan) (Cyan) (Gold)",
                HexPixels(2, 1, "ff00>") + HexPixels(1, 1, "00 ff>", "/CIP3PreviewImageResolution [9 9] def\n"));
            const Outcome outcome = RunOn(bytes, {});
            EXPECT_EQ(outcome.status, 0);
            const std::string unusual = outcome.out.substr(outcome.out.find("Unusual"));
            EXPECT_THAT(unusual, HasSubstr("front has 3 separation names for 2 separations"));
            EXPECT_THAT(unusual, HasSubstr("side has two separations named \"Cyan\""));
            EXPECT_THAT(unusual, HasSubstr("has 1 x 1 pixels, the first of its side 2 x 1"));
            EXPECT_THAT(unusual, HasSubstr("another resolution than the first"));
            EXPECT_THAT(unusual, HasSubstr("goes on for 1 bytes after its last row"));
            EXPECT_THAT(unusual, HasSubstr("separation \"Cyan\" has no ink"));
        }

        TEST(Run, NamesCannotDriveATerminal)
        {
            const std::string bytes = FrontOf("(\\033[2J\x9B\x31m\\377)", HexPixels(1, 1, "00>"));
            const Outcome outcome = RunOn(bytes, {});
            EXPECT_THAT(outcome.out, HasSubstr("\\x1b[2J\\xc2\\x9b1m\xC3\xBF"));
            EXPECT_THAT(outcome.out, Not(HasSubstr("\x1B")));
        }

        TEST(Run, EverythingInFrontOfADamageIsShownAndOneLineNamesIt)
        {
            for (const std::string form : {"", "--json", "--zones=1"})
            {
                const std::string cut = TwoSheets().substr(0, 1995);
                const Outcome outcome =
                    RunOn(cut, form.empty() ? std::vector<std::string>() : std::vector<std::string>{form});
                EXPECT_EQ(outcome.status, 1) << form;
                EXPECT_THAT(outcome.out, HasSubstr("S2")) << form;
                EXPECT_EQ(
                    outcome.error, "job.ppf: byte 1995: file ends within the section CIP3BeginBack "
                                   "that begins at byte "
                                   "1518");
            }
        }

        TEST(Run, PreviewThatCannotBeDecodedLeavesTheOthers)
        {
            const Outcome text = RunOn(BrokenSecond(), {});
            EXPECT_EQ(text.status, 1);
            EXPECT_THAT(text.out, ContainsRegex(" Cyan +50.00 %"));
            EXPECT_THAT(text.out, ContainsRegex(" Gold .*damaged"));
            EXPECT_THAT(text.error, HasSubstr("ASCIIHex data holds a character that is not a digit"));
            const Outcome zones = RunOn(BrokenSecond(), {"--zones", "2"});
            EXPECT_EQ(zones.status, 1);
            EXPECT_THAT(zones.out, HasSubstr("\n   1       0.0       0.4   100.00        -\n"));
        }

        TEST(Run, CheckIsSilentOnAGoodFileAndListsEveryFinding)
        {
            const Outcome good = RunOn(TwoSheets(), {"--check"});
            EXPECT_EQ(good.status, 0);
            EXPECT_EQ(good.out + good.error, "");

            std::string bytes = TwoSheets();
            bytes.replace(68, 10, "0000000600");
            bytes[1230] = 'g';
            const Outcome bad = RunOn(bytes, {"--check"});
            EXPECT_EQ(bad.status, 1);
            EXPECT_EQ(
                bad.out, "byte 68: directory entry of sheet \"S1\" gives offset 600, but the section begins at 601\n"
                         "byte 1230: ASCIIHex data holds a character that is not a digit\n");
            EXPECT_EQ(bad.error, "") << "a finding is said once";
        }

        TEST(Run, ZonesOfANumberAndOfAWidthAreTables)
        {
            const Outcome number = RunOn(TwoSheets(), {"--zones", "2"});
            EXPECT_EQ(number.status, 0);
            EXPECT_THAT(
                number.out, StartsWith("Sheet 1, \"S1\", front: ink coverage per zone in per cent\n"
                                       "zone   from mm     to mm    Black\n"
                                       "   1       0.0      25.4    50.00\n"
                                       "   2      25.4      50.8    87.45\n"
                                       "\nSheet 2"));
            const Outcome width = RunOn(TwoSheets(), {"--zone-width", "1.5 inch"});
            EXPECT_THAT(
                width.out, HasSubstr("   1       0.0      38.1    66.67\n"
                                     "   2      38.1      50.8    74.90\n"));
        }

        TEST(Run, WrongCommandLinesAreUsageErrors)
        {
            const std::vector<std::string> lines[] = {
                {},
                {"a", "b"},
                {"--zones", "0", "a"},
                {"--zones", "x", "a"},
                {"--zone-width", "5", "a"},
                {"--zone-width", "-5mm", "a"},
                {"--zone-width", "0mm", "a"},
                {"--zones", "2", "--zone-offset", "5mm", "a"},
                {"--zones", "2", "--zone-width", "5mm", "--zone-offset", "5", "a"},
                {"--csv", "--json", "a"},
                {"--csv", "--jdf", "x", "a"},
                {"--xjdf", "", "a"},
                {"--check", "--json", "a"},
                {"--check", "--zones", "3", "a"},
                {"--json", "--report", "x", "a"},
                {"--extract", "d", "--json", "a"},
                {"--extract", "", "a"},
                {"--unknown", "a"},
            };
            for (const std::vector<std::string>& line : lines)
            {
                const Outcome outcome = RunWith(line);
                EXPECT_EQ(outcome.status, 2) << testing::PrintToString(line);
                EXPECT_NE(outcome.error, "");
                EXPECT_THAT(outcome.error, Not(HasSubstr("\n"))) << testing::PrintToString(line);
            }
            EXPECT_THAT(RunWith({"--help"}).out, HasSubstr("--zone-width"));
            EXPECT_THAT(RunWith({"--version"}).out, StartsWith("ppfinfo "));
        }

        TEST(Run, FileThatCannotBeReadIsAFailureThatNamesIt)
        {
            const Outcome outcome = RunWith({"/nowhere/job.ppf"});
            EXPECT_EQ(outcome.status, 1);
            EXPECT_EQ(outcome.error, "/nowhere/job.ppf: No such file or directory");
            EXPECT_THAT(RunOn("", {}).error, HasSubstr("byte 0: not a print production file"));
            EXPECT_EQ(RunOn("II*", {}).out, "");
            EXPECT_THAT(RunWith({"/dev/zero"}).error, StartsWith("/dev/zero: byte 0: not a print production file"));
        }

        TEST(Run, OutputThatCannotBeWrittenIsAFailureWithItsReason)
        {
            const Folder folder;
            Options options;
            options.file = folder.Write("job.ppf", TwoSheets());
            const Host::Descriptor full(open("/dev/full", O_WRONLY | O_CLOEXEC));
            Host::DescriptorStream out(full.Number());
            EXPECT_EQ(
                TestSupport::FailureOf<Host::Failure>([&] { PpfInfo::Run(options, out); }),
                "standard output cannot be written: No space left on device");
        }
    }
}
