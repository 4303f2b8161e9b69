// The driver over a fake reader and the real painter: what it writes, what it says when something fails, and what state
// the job, the file and the reader are left in.
#include "frontend/ConversionDriver.h"
#include "frontend/ConverterImpl.h"
#include "tests/Sheetvane/Failures.h"
#include "tests/Sheetvane/FakeReader.h"
#include "tests/Sheetvane/Values.h"
#include "tests/support/Folder.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace SheetvaneTest
{
    using namespace std::string_literals;
    using testing::EndsWith;
    using testing::HasSubstr;
    using testing::Not;
    using Trouble = FakeSeparation::Trouble;

    namespace
    {
        constexpr char General[] = "Problem converting TIFF files to CIP3";

        class ConversionDriver : public FakeReaderTest
        {
        protected:
            ConversionDriver()
            {
                fake.separations["k.tif"] = {2, 4, 2, 4, {std::string(4, '\0'), "\xFF\xFF\0\x80"s}};
                job.painterParameters.compression = 0;
                job.painterParameters.encoding = 1;
            }

            Sheetvane::SheetRecord& AddSheet(const std::string& name)
            {
                Sheetvane::SheetRecord sheet;
                sheet.parameters.jobName = "J";
                sheet.parameters.sheetName = name;
                sheet.parameters.units = RasterOutput::CIP3Units::Inch;
                job.sheets.push_back(sheet);
                return job.sheets.back();
            }
            Sheetvane::SheetRecord& AddFront(const std::string& name, const std::string& path = "k.tif")
            {
                Sheetvane::SheetRecord& sheet = AddSheet(name);
                sheet.frontSeparationNames = {"Black"};
                sheet.frontFilePaths = {path};
                return sheet;
            }

            std::string Convert(const std::string& path)
            {
                return FailureOf([&] { Sheetvane::CreateCIP3File(job, Location(path)); });
            }

            /// The lines of the document between its directory and its end that begin with `word`.
            static std::string Lines(const std::string& document, const std::string& word)
            {
                std::string lines;
                std::istringstream stream(document);
                for (std::string line; std::getline(stream, line);)
                {
                    if (line.compare(0, word.size(), word) == 0)
                    {
                        lines += line + '\n';
                    }
                }
                return lines;
            }

            TestSupport::Folder folder;
            const std::string out = folder / "out.ppf";
            Sheetvane::ConverterImpl job;
        };
    }

    TEST_F(ConversionDriver, SurfacesGoFrontFirstAndSeparationsInOrder)
    {
        Sheetvane::SheetRecord& both = AddFront("S1");
        both.frontSeparationNames = {"Cyan", "Black"};
        both.frontFilePaths = {"c.tif", "k.tif"};
        both.backSeparationNames = {"Red"};
        both.backFilePaths = {"r.tif"};
        fake.separations["c.tif"] = {1, 1, 1, 1, {"\x10"}};
        fake.separations["r.tif"] = {1, 1, 1, 1, {"\x20"}};
        Sheetvane::SheetRecord& back = AddSheet("S2");
        back.backSeparationNames = {"Black"};
        back.backFilePaths = {"k.tif"};

        EXPECT_EQ(Convert(out), "[nothing]");
        const std::string document = folder.Read("out.ppf");
        EXPECT_EQ(
            Lines(document, "CIP3Begin"),
            "CIP3BeginPPFDirectory\nCIP3BeginSheet\nCIP3BeginFront\nCIP3BeginPreviewImage\n"
            "CIP3BeginSeparation\nCIP3BeginSeparation\nCIP3BeginBack\nCIP3BeginPreviewImage\n"
            "CIP3BeginSeparation\nCIP3BeginSheet\nCIP3BeginBack\nCIP3BeginPreviewImage\n"
            "CIP3BeginSeparation\n");
        EXPECT_EQ(
            Lines(document, "/CIP3AdmSeparationNames"), "/CIP3AdmSeparationNames [ (Cyan) (Black) ] def\n"
                                                        "/CIP3AdmSeparationNames [ (Red) ] def\n"
                                                        "/CIP3AdmSeparationNames [ (Black) ] def\n");
        EXPECT_THAT(document, HasSubstr("CIP3PreviewImage \nef>\nCIP3EndSeparation\n"));
        EXPECT_THAT(document, HasSubstr("CIP3PreviewImage \ndf>\nCIP3EndSeparation\n"));
        EXPECT_THAT(document, HasSubstr("CIP3PreviewImage \nffffffff\n0000ff7f>\nCIP3EndSeparation\n"));
        // Whatever a later file is like, the sheet's first one describes all of them.
        EXPECT_EQ(
            Lines(document, "/CIP3PreviewImageWidth"), "/CIP3PreviewImageWidth 1 def\n/CIP3PreviewImageWidth 1 def\n"
                                                       "/CIP3PreviewImageWidth 1 def\n/CIP3PreviewImageWidth 4 def\n");
    }

    TEST_F(ConversionDriver, ChannelsThatFollowEachOtherOnOnePageAreReadTogether)
    {
        Sheetvane::SheetRecord& sheet = AddSheet("S1");
        sheet.frontSeparationNames = {"A", "B", "C", "D", "E", "F"};
        sheet.frontFilePaths = {"k.tif", "k.tif", "k.tif", "c.tif", "k.tif", "k.tif"};
        sheet.frontImages = {{1, 2}, {1, 1}, {2, 1}, {2, 3}};
        sheet.backSeparationNames = {"A"};
        sheet.backFilePaths = {"c.tif"};
        sheet.backImages = {{2, 1}};
        fake.separations["c.tif"] = {1, 1, 1, 1, {"\x10"}};
        EXPECT_EQ(Convert(out), "[nothing]");
        EXPECT_EQ(
            Lines(fake.log, "page"), "page 1 channels 2 1\npage 2 channels 1\npage 2 channels 3\npage 2 channels 1\n");
        EXPECT_EQ(Lines(folder.Read("out.ppf"), "CIP3EndSeparation").size(), 7 * sizeof "CIP3EndSeparation");
    }

    TEST_F(ConversionDriver, GeometryComesFromTheFirstFile)
    {
        fake.separations["g.tif"] = {1000, 8000, 1, 2400};
        AddFront("S1", "g.tif");
        EXPECT_EQ(Convert(out), "[nothing]");
        const std::string document = folder.Read("out.ppf");
        EXPECT_THAT(document, HasSubstr("/CIP3AdmPSExtent [ 8 inch 0.00333333 inch ] def\n"));
        EXPECT_THAT(document, HasSubstr("/CIP3PreviewImageMatrix [2400 0 0 -1 0 1] def\n"));
        EXPECT_THAT(document, HasSubstr("/CIP3PreviewImageResolution [300 300] def\n"));
        EXPECT_EQ(job.sheets[0].parameters.extentX, 8.0);
        EXPECT_EQ(job.sheets[0].parameters.extentY, 1 / 300.0);
    }

    TEST_F(ConversionDriver, FilesWithoutLinesOrPixelsAreWritten)
    {
        fake.separations["no lines"] = {1, 1, 0, 4};
        fake.separations["no pixels"] = {1, 1, 3, 0};
        Sheetvane::SheetRecord& sheet = AddFront("S1", "k.tif");
        sheet.frontSeparationNames = {"A", "B", "C"};
        sheet.frontFilePaths = {"k.tif", "no lines", "no pixels"};
        EXPECT_EQ(Convert(out), "[nothing]");
        EXPECT_THAT(folder.Read("out.ppf"), HasSubstr("CIP3PreviewImage >\nCIP3EndSeparation\n"));
        EXPECT_THAT(folder.Read("out.ppf"), HasSubstr("CIP3PreviewImage \n\n\n>\nCIP3EndSeparation\n"));
    }

    TEST_F(ConversionDriver, MissingFoldersAreCreatedOnAllLevels)
    {
        const std::string deep = folder / "a/b/../c/out.ppf";
        EXPECT_EQ(Convert(deep), "[nothing]");
        EXPECT_EQ(folder.Read("a/c/out.ppf").size(), 62u);
    }

    TEST_F(ConversionDriver, NamesThatAreNotUtf8ReachTheFileSystemUnchanged)
    {
        const std::string odd = folder / "\xC3\xA4 \xE4/\xFF.ppf";
        EXPECT_EQ(Convert(odd), "[nothing]");
        EXPECT_EQ(TestSupport::Folder::BytesOf(odd).size(), 62u);
    }

    TEST_F(ConversionDriver, PlaceThatTakesNoFolderOrNoFileFails)
    {
        constexpr char NoFolder[] = "Error creating folder for CIP3 file";
        constexpr char NoFile[] = "Could not open CIP3 file";
        folder.Write("file", "kept");
        std::filesystem::create_directory(out);
        std::filesystem::create_symlink(folder / "nowhere", folder / "dangling");
        EXPECT_EQ(Convert("bare.ppf"), NoFolder);
        EXPECT_EQ(Convert(""), NoFolder);
        EXPECT_EQ(Convert(folder / "dangling/out.ppf"), NoFolder);
        EXPECT_EQ(Convert(folder / "file/below/out.ppf"), NoFolder);
        EXPECT_EQ(job.painterParameters.filePath, L"");
        EXPECT_EQ(Convert(folder / "file/out.ppf"), NoFile);
        EXPECT_EQ(Convert(out), NoFile);
        EXPECT_EQ(folder.Read("file"), "kept");
    }

    TEST_F(ConversionDriver, LocationThatCannotBeLookedUpIsNotTranslated)
    {
        EXPECT_EQ(
            FailureOf([&] { Sheetvane::CreateCIP3File(job, KX_TURL()); }),
            "[KX_EException: The location has no local name]");
        EXPECT_THAT(
            Convert(folder / std::string(300, 'n') + "/out.ppf"), HasSubstr("[std::exception: boost::filesystem"));
    }

    TEST_F(ConversionDriver, FailureInsideLeavesAnEmptyFileAndTheJobComplete)
    {
        struct Case
        {
            const char* remark = nullptr;
            FakeSeparation separation;
            const char* text = nullptr;
        };
        const FakeSeparation good = fake.separations["k.tif"];
        const Case cases[] = {
            {"no reader", {1, 1, 2, 4, {}, Trouble::NullReader}, General},
            {"header", {1, 1, 2, 4, {}, Trouble::HeaderFails}, General},
            {"file access", {1, 1, 2, 4, {}, Trouble::HeaderCallsFailure}, General},
            {"second line", {1, 1, 2, 4, {}, Trouble::LineFails, 1}, General},
            {"no extent", {1, 0, 2, 4}, "Invalid sheet parameters"},
            {"negative extent", {1, -1, 2, 4}, "Invalid sheet parameters"},
        };
        AddFront("S1");
        AddFront("S2", "bad.tif");
        for (const Case& bad : cases)
        {
            folder.Write("out.ppf", "older");
            fake.separations["bad.tif"] = bad.separation;
            EXPECT_EQ(Convert(out), bad.text) << bad.remark;
            EXPECT_TRUE(std::filesystem::exists(out)) << bad.remark;
            EXPECT_EQ(folder.Read("out.ppf"), "") << bad.remark;
            EXPECT_EQ(fake.openReaders, 0) << bad.remark;
            EXPECT_EQ(job.sheets.size(), 2u);
            EXPECT_EQ(job.sheets[0].parameters.extentX, 2.0) << bad.remark;
        }
        fake.separations["bad.tif"] = good;
        EXPECT_EQ(Convert(out), "[nothing]");
        EXPECT_THAT(folder.Read("out.ppf"), EndsWith("%%CIP3EndOfFile\n"));
    }

    TEST_F(ConversionDriver, SheetsThatAreNotCompleteFail)
    {
        AddFront("S1").parameters.jobName = "";
        EXPECT_EQ(Convert(out), General);
        EXPECT_EQ(job.sheets[0].parameters.extentX, 2.0); // its first file has been read by then

        job.sheets.clear();
        AddSheet("no file");
        EXPECT_EQ(Convert(out), General);

        job.sheets.clear();
        AddFront("");
        EXPECT_EQ(Convert(out), "[nothing]");
        AddFront("S2");
        EXPECT_EQ(Convert(out), "Invalid sheet parameters");
        EXPECT_EQ(job.painterParameters.sheetCount, 2u);
    }

    TEST_F(ConversionDriver, ListsOfAFailedSheetAreWalkedAsTheyAre)
    {
        Sheetvane::SheetRecord& sheet = AddFront("S1");
        sheet.frontFilePaths = {"k.tif", "k.tif"};
        sheet.backFilePaths = {"never opened"};
        EXPECT_EQ(Convert(out), "[nothing]");
        EXPECT_THAT(folder.Read("out.ppf"), HasSubstr("/CIP3AdmSeparationNames [ (Black) ] def\n"));
        EXPECT_EQ(Lines(folder.Read("out.ppf"), "CIP3BeginSeparation"), "CIP3BeginSeparation\nCIP3BeginSeparation\n");
        EXPECT_THAT(folder.Read("out.ppf"), Not(HasSubstr("CIP3BeginBack")));
    }
}
