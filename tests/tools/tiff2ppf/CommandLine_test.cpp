#include "host/Failure.h"
#include "host/Paths.h"
#include "tests/support/Failures.h"
#include "tiff2ppf/CommandLine.h"

#include <gmock/gmock.h>

namespace Tiff2PpfTest
{
    using namespace Jobs;
    using namespace Tiff2Ppf;
    using ::testing::HasSubstr;

    CommandLine Parse(std::vector<const char*> arguments)
    {
        arguments.insert(arguments.begin(), "tiff2ppf");
        return ParseCommandLine(static_cast<int>(arguments.size()), arguments.data());
    }

    std::string RefusalOf(const std::vector<const char*>& arguments)
    {
        return TestSupport::FailureOf<Host::UsageError>([&] { Parse(arguments); });
    }

    TEST(CommandLine, OptionsBelongToTheSheetBeforeThem)
    {
        const CommandLine line = Parse(
            {"-o", "o.ppf", "--sheet", "A", "--front", "C=/c", "--sheet=B", "--back", "K=/k=1", "--param", "X=(a=b)",
             "--front-inks", "/m=", "--job", "J", "--param=Y="});
        ASSERT_EQ(line.job.sheets.size(), 2U);
        const Sheet& a = line.job.sheets[0];
        EXPECT_EQ(a.jobName, "J");
        EXPECT_EQ(a.sheetName, "A");
        ASSERT_EQ(a.front.size(), 1U);
        EXPECT_TRUE(a.back.empty());
        EXPECT_TRUE(a.parameters.empty());
        const Sheet& b = line.job.sheets[1];
        EXPECT_TRUE(b.front.at(0).isEveryInk);
        EXPECT_EQ(b.front.at(0).file, "/m=");
        EXPECT_EQ(b.back.at(0).name, "K");
        EXPECT_EQ(b.back.at(0).file, "/k=1");
        EXPECT_EQ(std::get<std::string>(b.parameters.at("X")), "(a=b)");
        EXPECT_EQ(std::get<std::string>(b.parameters.at("Y")), "");
    }

    TEST(CommandLine, RelativeFileStandsInTheCurrentFolder)
    {
        const CommandLine line = Parse({"--job", "J", "--sheet", "", "--front", "K=k.tif", "-o", "o.ppf"});
        EXPECT_EQ(line.job.sheets.at(0).front.at(0).file, Host::CurrentFolder() + "/k.tif");
        EXPECT_EQ(line.output, "o.ppf");
    }

    TEST(CommandLine, ValueIsTakenWhateverItLooksLike)
    {
        // An empty value after '=', one in brackets, one that looks like an option, and bytes that are not UTF-8.
        const CommandLine line = Parse(
            {"--job=--sheet=", "--sheet=", "--front", "[a,b]=[/x]", "--back", "--job==/\xFF", "--compression", "none",
             "-o", "--verbose"});
        ASSERT_EQ(line.job.sheets.size(), 1U);
        const Sheet& sheet = line.job.sheets[0];
        EXPECT_EQ(sheet.jobName, "--sheet=");
        EXPECT_EQ(sheet.sheetName, "");
        EXPECT_EQ(sheet.front.at(0).name, "[a,b]");
        EXPECT_EQ(sheet.back.at(0).name, "--job");
        EXPECT_EQ(sheet.back.at(0).file, Host::CurrentFolder() + "/=/\xFF");
        EXPECT_EQ(line.compression, Compression::CIP3CompressionNone);
        EXPECT_EQ(line.output, "--verbose");
        EXPECT_FALSE(line.verbose);
    }

    TEST(CommandLine, JobFileComesWithItsOverrides)
    {
        const CommandLine line =
            Parse({"-", "--encoding", "binary", "--mixed-sizes", "--no-sync", "--verbose", "-oout"});
        EXPECT_EQ(line.jobFile, "-");
        EXPECT_FALSE(line.compression);
        EXPECT_EQ(line.encoding, Encoding::CIP3EncodingBinary);
        EXPECT_TRUE(line.mixedSizes);
        EXPECT_TRUE(line.verbose);
        EXPECT_FALSE(line.sync);
        EXPECT_EQ(line.output, "out");
    }

    TEST(CommandLine, OrientationBelongsToTheSheetBeforeItOrToAll)
    {
        const CommandLine line = Parse(
            {"--job", "J", "--front-orientation", "flip180", "--sheet", "A", "--front", "K=k", "--sheet", "B",
             "--front", "K=k", "--front-orientation", "rotate90", "--back-orientation", "flip270", "-o", "x"});
        EXPECT_EQ(line.job.sheets[0].frontOrientation, Orientation::Flip180);
        EXPECT_EQ(line.job.sheets[0].backOrientation, Orientation::Rotate0);
        EXPECT_EQ(line.job.sheets[1].frontOrientation, Orientation::Rotate90);
        EXPECT_EQ(line.job.sheets[1].backOrientation, Orientation::Flip270);
        EXPECT_EQ(
            Parse({"a.json", "--back-orientation", "rotate180", "-o", "x"}).backOrientation, Orientation::Rotate180);
    }

    TEST(CommandLine, PreviewsAreChosen)
    {
        const CommandLine line =
            Parse({"a.json", "-o", "x", "--resolution", "72.5", "--input-resolution=2400", "--threads", "3"});
        EXPECT_EQ(line.reduction->resolution, 72.5);
        EXPECT_EQ(line.reduction->onlyAbove, 0);
        EXPECT_EQ(line.inputResolution, 2400);
        EXPECT_EQ(line.threads, 3U);
        EXPECT_FALSE(Parse({"a.json", "-o", "x"}).reduction);
        EXPECT_GE(Parse({"a.json", "-o", "x"}).threads, 1U);
        for (const char* const word : {"0.9", "2400.1", "nan", "inf", "-50", "72x", "", "AUTO"})
        {
            EXPECT_THAT(RefusalOf({"a.json", "-o", "x", "--resolution", word}), HasSubstr("--resolution: ")) << word;
        }
        for (const char* const word : {"0", "-1", "inf", "nan", "auto"})
        {
            EXPECT_THAT(RefusalOf({"a.json", "-o", "x", "--input-resolution", word}), HasSubstr("--input-resolution: "))
                << word;
        }
        for (const char* const word : {"0", "257", "1.5", "-1"})
        {
            EXPECT_THAT(RefusalOf({"a.json", "-o", "x", "--threads", word}), HasSubstr("--threads: ")) << word;
        }
    }

    TEST(CommandLine, HelpAndVersionAnswerWithoutAJob)
    {
        EXPECT_THAT(Parse({"--help"}).answer, HasSubstr("--mixed-sizes"));
        EXPECT_THAT(Parse({"--version"}).answer, ::testing::MatchesRegex("tiff2ppf [0-9]+\\.[0-9]+\\.[0-9]+\n"));
    }

    struct Case
    {
        std::vector<const char*> arguments;
        const char* said;
    };

    TEST(CommandLine, WhatIsNoJobIsRefused)
    {
        const Case cases[] = {
            {{}, "no output"},
            {{"job.json"}, "no output"},
            {{"-o", "x"}, "no job"},
            {{"job.json", "-o", ""}, "no output"},
            {{"", "-o", "x"}, "no job"},
            {{"a.json", "b.json", "-o", "x"}, "b.json"},
            {{"a.json", "-o", "x", "--job", "J"}, "both a job file, \"a.json\", and a job on the command line"},
            {{"a.json", "-o", "x", "--sheet", "A", "--front", "K=k"}, "both a job file"},
            {{"a.json", "-o", "x", "--compression", "RunLength"}, "--compression: \"RunLength\" is none of"},
            {{"a.json", "-o", "x", "--encoding="}, "--encoding: \"\" is none of: binary, asciihex, ascii85"},
            {{"--job", "J", "-o", "x", "--front", "K=k", "--sheet", "A"}, "--front belongs to a sheet"},
            {{"--job", "J", "-o", "x", "--sheet", "A", "--front", "k.tif"}, "--front \"k.tif\": the form is INK=FILE"},
            {{"--job", "J", "-o", "x", "--sheet", "A", "--back", "K="}, "--back \"K=\": the file name is empty"},
            {{"--job", "J", "-o", "x", "--sheet", "A", "--front-set", "/no/*"},
             "--front-set: the folder /no cannot be"},
            {{"--job", "J", "-o", "x", "--back-set", "*"}, "--back-set belongs to a sheet"},
            {{"--job", "J", "-o", "x", "--sheet", "A", "--back-inks="}, "--back-inks: the file name is empty"},
            {{"a.json", "-o", "x", "--back-set", "*"}, "both a job file"},
            {{"--job", "J", "-o", "x", "--sheet", "A", "--param", "=1"}, "--param \"=1\": the key is empty"},
            {{"--job", "J", "-o", "x", "--sheet", "A", "--param", "X=1", "--param", "X=1"},
             "--param \"X\" is repeated"},
            {{"a.json", "-o", "x", "--front-orientation", "rotate0", "--front-orientation", "rotate0"}, "is repeated"},
            {{"--job", "J", "-o", "x", "--sheet", "A", "--back-orientation", "flip0", "--back-orientation", "flip0"},
             "--back-orientation is repeated without a --sheet between"},
            {{"--job", "J", "-o", "x", "--sheet", "A", "--back-orientation", "flip"}, "--back-orientation: \"flip\""},
            // The job as a whole.
            {{"--job", "J", "-o", "x"}, "the job has no sheet"},
            {{"--job", "a.json", "-o", "x"}, "a job file stands without it: tiff2ppf a.json"},
            {{"-o", "x", "--sheet", "A", "--front", "K=k"}, "sheet 1 \"A\": the job name is empty"},
            {{"--job", "J", "-o", "x", "--sheet", "A"}, "sheet 1 \"A\": neither front nor back has a file"},
            {{"--job", "J", "-o", "x", "--sheet", "A", "--front", "K=k", "--sheet=", "--front", "K=k"},
             "sheet 2: the sheet name is empty"},
        };
        for (const Case& c : cases)
        {
            EXPECT_THAT(RefusalOf(c.arguments), HasSubstr(c.said));
        }
    }

    TEST(CommandLine, LimitOfASheetNameHoldsForItsEscapedForm)
    {
        const auto refusalOf = [](const std::string& name) {
            return RefusalOf({"--job", "J", "-o", "x", "--sheet", name.c_str(), "--front", "K=k"});
        };
        EXPECT_EQ(refusalOf(std::string(214, 'x')), "no failure");
        EXPECT_THAT(refusalOf(std::string(215, 'x')), HasSubstr("takes 215 bytes"));
        EXPECT_EQ(refusalOf(std::string(107, '\\')), "no failure");
        EXPECT_THAT(refusalOf(std::string(213, 'x') + '\\'), HasSubstr("takes 215 bytes"));
        EXPECT_THAT(refusalOf(std::string(213, 'x') + ')'), HasSubstr("takes 215 bytes"));
    }
}
