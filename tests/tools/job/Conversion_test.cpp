#include "host/Failure.h"
#include "job/Conversion.h"
#include "job/InkFile.h"
#include "tests/support/Failures.h"
#include "tests/support/Folder.h"
#include "tests/support/PlainTiff.h"
#include "tests/support/TiffEditor.h"
#include "tests/support/TiffMaker.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <sstream>

namespace JobsTest
{
    using namespace Jobs;
    using ::testing::HasSubstr;
    using ::testing::MatchesRegex;
    using ::testing::StartsWith;
    using TestSupport::PlainTiff;

    /// Converts jobs in a folder of its own to "out.ppf" there.
    class ConversionTest : public ::testing::Test
    {
    protected:
        ConversionTest() { settings.output = folder / "out.ppf"; }

        /// Adds a sheet with a front of these files, each under its own name.
        Sheet& AddSheet(const std::string& name, const std::vector<std::string>& files)
        {
            Sheet sheet;
            sheet.jobName = "J";
            sheet.sheetName = name;
            for (const std::string& file : files)
            {
                sheet.front.push_back({file, folder / file});
            }
            job.sheets.push_back(sheet);
            return job.sheets.back();
        }

        std::string Convert()
        {
            std::ostringstream messages;
            Jobs::Convert(job, settings, messages);
            return messages.str();
        }

        /// The text of the failure of a conversion, which has to leave the folder as it was.
        std::string FailureOfConversion()
        {
            const std::vector<std::string> before = folder.Names();
            std::string failure = TestSupport::FailureOf<Host::Failure>([this] { Convert(); });
            EXPECT_EQ(folder.Names(), before);
            return failure;
        }

        TestSupport::Folder folder;
        Job job;
        ConversionSettings settings;
    };

    TEST_F(ConversionTest, NamesAndValuesReachTheFile)
    {
        folder.Write("k", PlainTiff());
        Sheet& sheet = AddSheet("a (b) \\", {"k"});
        sheet.jobName = "J)";
        sheet.front.front().name = "Black (";
        sheet.parameters = {
            {"Text", "(as is \\"},
            {"Int", Number(std::int32_t{-5})},
            {"UInt", Number(std::uint32_t{4294967295U})},
            {"Double", Number(0.5)},
            {"Measure", Measure{Number(std::int32_t{135}), "g"}},
            {"Length", Measure{Number(12.5), "mm"}},
        };
        job.compression = Compression::CIP3CompressionNone;
        job.encoding = Encoding::CIP3EncodingASCIIHex;

        EXPECT_EQ(Convert(), "");
        const std::string file = folder.Read("out.ppf");
        for (const char* const line :
             {"/CIP3AdmJobName (J\\)) def\n", "/CIP3AdmSheetName (a (b) \\\\) def\n", "[ (Black \\() ]",
              "/Text (as is \\ def\n", "/Int -5 def\n", "/UInt 4294967295 def\n", "/Double 0.500000 def\n",
              "/Measure 135 g def\n", "/Length 12.500000 mm def\n", "/CIP3PreviewImageCompression /None def\n",
              "/CIP3PreviewImageEncoding /ASCIIHexDecode def\n"})
        {
            EXPECT_THAT(file, HasSubstr(line));
        }
    }

    TEST_F(ConversionTest, CauseIsNamedWithItsPlace)
    {
        folder.Write("k", PlainTiff());
        folder.Write("text", "This is not a TIFF.");
        AddSheet("S1", {"k"});
        AddSheet("S2", {"k"}).back = {{"Cyan", folder / "k"}, {"Black", folder / "text"}};
        EXPECT_THAT(
            FailureOfConversion(),
            MatchesRegex(
                "Problem converting TIFF files to CIP3: sheet 2 \"S2\", back, separation \"Black\": .*/text.+"));

        job.sheets[1].back[1].file = folder / "missing";
        EXPECT_THAT(
            FailureOfConversion(), MatchesRegex(".*separation \"Black\": .*/missing.*No such file or directory.*"));
    }

    TEST_F(ConversionTest, FirstOfSeveralCausesIsNamedAlsoWhereItIsInTheLines)
    {
        TestSupport::TiffForm form;
        form.compression = COMPRESSION_LZW;
        TestSupport::TiffEditor editor(TestSupport::MakeTiff(form, TestSupport::MixedSamples(form.bits)));
        folder.Write("good", editor.Bytes());
        std::string damaged = editor.Bytes();
        damaged[editor.Get(TIFFTAG_STRIPOFFSETS, 1)] = '\xff';
        folder.Write("damaged", damaged);
        AddSheet("S1", {"good", "damaged", "missing"});
        AddSheet("S2", {"missing"});
        for (const unsigned int threads : {1U, 3U})
        {
            settings.threads = threads;
            settings.mixedSizes = threads == 1;
            EXPECT_THAT(
                FailureOfConversion(), MatchesRegex("Problem converting TIFF files to CIP3: sheet 1 \"S1\", front, "
                                                    "separation \"damaged\": .*/damaged: line 6 of 23: .+"));
        }
    }

    TEST_F(ConversionTest, PathBeyondTheLimitIsNamed)
    {
        AddSheet("", {std::string(1024, 'x')});
        EXPECT_THAT(
            FailureOfConversion(), MatchesRegex(".*sheet 1, front, separation .* bytes, and the limit is 1023"));
    }

    TEST_F(ConversionTest, SizesThatDifferAreRefusedUnlessLetThrough)
    {
        folder.Write("small", PlainTiff(4, 2));
        folder.Write("large", PlainTiff(4, 3));
        AddSheet("S1", {"small"});
        AddSheet("S2", {"large"}).back = {{"Black", folder / "small"}};
        EXPECT_EQ(
            FailureOfConversion(), "sheet 2 \"S2\": the separations differ in size: front \"large\", " +
                                       (folder / "large") + ", has 4 x 3 pixels; back \"Black\", " +
                                       (folder / "small") + ", has 4 x 2 pixels (--mixed-sizes lets them through)");

        settings.mixedSizes = true;
        for (const auto compression : {Compression::CIP3CompressionNone, Compression::CIP3CompressionRunLength})
        {
            for (const auto encoding :
                 {Encoding::CIP3EncodingBinary, Encoding::CIP3EncodingASCIIHex, Encoding::CIP3EncodingASCII85})
            {
                job.compression = compression;
                job.encoding = encoding;
                EXPECT_NO_THROW(Convert()) << "compression " << compression << ", encoding " << encoding;
            }
        }
    }

    TEST_F(ConversionTest, SeparationIsNotOverwritten)
    {
        folder.Write("k", PlainTiff());
        std::filesystem::create_symlink("k", folder / "out.ppf");
        AddSheet("", {"k"});
        const std::string before = folder.Read("k");
        EXPECT_THROW(Convert(), Host::UsageError);
        EXPECT_EQ(folder.Read("k"), before);
    }

    // The test's files have 2 pixels per inch.
    TEST_F(ConversionTest, PlateIsTurnedAndReducedAndItsSizesAreSaid)
    {
        folder.Write("c", PlainTiff(480, 240));
        folder.Write("k", PlainTiff(480, 240));
        AddSheet("S\n1", {"c", "k"}).frontOrientation = Orientation::Rotate90;
        job.inputResolution = 508;
        settings.verbose = true;
        settings.threads = 2;
        EXPECT_EQ(Convert(), "sheet 1 \"S\\x0a1\", front: 240 x 480 pixels at 508 per inch to 24 x 48 at 50.8: c, k\n");
        EXPECT_THAT(folder.Read("out.ppf"), HasSubstr("/CIP3PreviewImageWidth 24 def\n"));

        job.reduction = KeepAll;
        settings.isTerminal = true;
        EXPECT_THAT(
            Convert(),
            HasSubstr("sheet 1 \"S\\x0a1\", front, separation \"c\" keeps its 508 pixels per inch; a preview has about "
                      "50.8, which --resolution 50.8 makes of it\n"));
    }

    TEST_F(ConversionTest, SizesAreComparedOnceTheyAreReduced)
    {
        folder.Write("c", PlainTiff(480, 240));
        folder.Write("k", PlainTiff(481, 240));
        AddSheet("S", {"c", "k"});
        job.inputResolution = 508;
        EXPECT_EQ(Convert(), "");
        folder.Write("k", PlainTiff(486, 240));
        EXPECT_THAT(FailureOfConversion(), HasSubstr("/k, has 49 x 24 pixels once it is reduced"));
    }

    TEST_F(ConversionTest, InksOfAFileAreWhatTheyAreInFilesOfTheirOwn)
    {
        TestSupport::TiffForm composite;
        composite.width = 400;
        composite.height = 300;
        composite.photometric = PHOTOMETRIC_SEPARATED;
        composite.samples = 4;
        composite.resolution = 600;
        TestSupport::TiffForm further = composite;
        further.samples = 1;
        further.pageName = "Signal Orange";
        const TestSupport::InkRule inks = TestSupport::MixedInks(8);
        folder.Write("inks", TestSupport::MakePages({composite, further}, inks));

        const std::vector<std::string> names = {"Cyan", "Magenta", "Yellow", "Black", "Signal Orange"};
        for (unsigned i = 0; i < names.size(); ++i)
        {
            const auto rule = [&](std::uint32_t x, std::uint32_t y) { return inks(i % 4, x, y); };
            folder.Write(names[i], TestSupport::MakeTiff(further, rule));
        }
        AddSheet("S", names).back = {{"Yellow", folder / "Yellow"}};
        Convert();
        const std::string wanted = folder.Read("out.ppf");

        job.sheets[0].front = {EveryInkOf(folder / "inks")};
        job.sheets[0].back = {{"Yellow", folder / "inks", 0, 3}};
        settings.verbose = true;
        for (const unsigned threads : {1U, 3U})
        {
            settings.threads = threads;
            EXPECT_EQ(
                Convert(), "sheet 1 \"S\", front: 400 x 300 pixels at 600 per inch to 34 x 25 at 50.8: Cyan, Magenta, "
                           "Yellow, Black, Signal Orange\n"
                           "sheet 1 \"S\", back: 400 x 300 pixels at 600 per inch to 34 x 25 at 50.8: Yellow\n");
            EXPECT_EQ(folder.Read("out.ppf"), wanted) << threads << " threads";
        }
    }

    TEST_F(ConversionTest, InkThatCannotBeHadIsNamedWithItsPlace)
    {
        TestSupport::TiffForm composite;
        composite.photometric = PHOTOMETRIC_SEPARATED;
        composite.samples = 5;
        folder.Write("inks", TestSupport::MakePages({composite}, TestSupport::MixedInks(8)));
        folder.Write("k", PlainTiff());
        AddSheet("S", {}).back = {EveryInkOf(folder / "inks")};
        EXPECT_THAT(
            FailureOfConversion(), StartsWith("sheet 1 \"S\", back: " + (folder / "inks") + ": page 1: sample 5 "));

        job.sheets[0].back = {{"Orange", folder / "inks", 1, 6}};
        EXPECT_THAT(
            FailureOfConversion(),
            HasSubstr("sheet 1 \"S\", back, separation \"Orange\": " + (folder / "inks") + ": page 1, channel 6: "));

        job.sheets[0].back = {{"Black", folder / "k"}, {"Orange", folder / "inks", 1, 5}};
        EXPECT_THAT(
            FailureOfConversion(),
            HasSubstr("back \"Orange\", " + (folder / "inks") + ", page 1, channel 5, has 37 x 23 pixels"));

        job.sheets[0].back = {EveryInkOf(folder / "inks")};
        settings.output = folder / "inks";
        EXPECT_THROW(Convert(), Host::UsageError);
    }
}
