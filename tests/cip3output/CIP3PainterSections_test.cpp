// The lines of a sheet's sections, and the data of its previews.
#include "tests/cip3output/Bytes.h"
#include "tests/cip3output/PlainLoops.h"
#include "tests/cip3output/PpfScribe.h"

#include <gmock/gmock.h>

#include <limits>

namespace CIP3OutputTest
{
    using namespace RasterOutput;
    using testing::HasSubstr;

    /// The sheet section of a document of one sheet without surfaces.
    std::string SheetSection(const CIP3SheetParameters& sheet)
    {
        PpfScribe scribe(1, None, Binary);
        scribe.Start();
        scribe.painter.BeginSheet(sheet);
        scribe.EndSheet();
        return Between(scribe.Finish(), "\n\n", "%%CIP3EndOfFile\n");
    }

    CIP3SheetParameters AnySheet()
    {
        CIP3SheetParameters sheet;
        sheet.jobName = "J";
        sheet.extentX = 210;
        sheet.extentY = 297.5;
        return sheet;
    }

    const std::string Curves = "/CIP3TransferFilmCurveData [0.0 0.0 1.0 1.0] def\n"
                               "/CIP3TransferPlateCurveData [0.0 0.0 1.0 1.0] def\n";

    TEST(CIP3PainterSections, NamesGoOutByteForByte)
    {
        CIP3SheetParameters sheet = AnySheet();
        sheet.jobName = "(\\\xE4\r)(";
        sheet.sheetName = ")%\n";
        EXPECT_THAT(
            SheetSection(sheet), HasSubstr("/CIP3AdmJobName ((\\\xE4\r)() def\n/CIP3AdmSheetName ()%\n) def\n"));
    }

    TEST(CIP3PainterSections, UnitFollowsEachExtent)
    {
        const char* const words[] = {"mm", "cm", "inch", "point", "", ""};
        for (std::uint32_t unit = 0; unit < 6; ++unit)
        {
            CIP3SheetParameters sheet = AnySheet();
            sheet.units = static_cast<CIP3Units>(unit);
            const std::string word = words[unit];
            EXPECT_THAT(SheetSection(sheet), HasSubstr("[ 210 " + word + " 297.5 " + word + " ] def\n")) << unit;
        }
    }

    TEST(CIP3PainterSections, OptionalEntriesFollowTheCurvesSortedByBytes)
    {
        CIP3SheetParameters sheet = AnySheet();
        sheet.optionalParameters = {{"b", "(2)"}, {"ab", ""}, {"a", "1 "}, {"\xC4", "4"}, {"B", "3"}};
        EXPECT_THAT(
            SheetSection(sheet),
            HasSubstr(Curves + "/B 3 def\n/a 1  def\n/ab  def\n/b (2) def\n/\xC4 4 def\n\nCIP3End"));
    }

    TEST(CIP3PainterSections, GivenExtentStandsInPlaceOfTheComputedOne)
    {
        CIP3SheetParameters sheet = AnySheet();
        sheet.optionalParameters = {{"CIP3AdmPSExtent", "[ 8.5 inch 11 inch ]"}, {"CIP3AdmA", "1"}};
        EXPECT_THAT(
            SheetSection(sheet),
            HasSubstr("(J) def\n/CIP3AdmPSExtent [ 8.5 inch 11 inch ] def\n" + Curves + "/CIP3AdmA 1 def\n\n"));

        sheet.optionalParameters["CIP3AdmPSExtent"] = "";
        EXPECT_THAT(
            SheetSection(sheet),
            HasSubstr("(J) def\n/CIP3AdmPSExtent [ 210 point 297.5 point ] def\n" + Curves + "/CIP3AdmA 1 def\n\n"));
    }

    TEST(CIP3PainterSections, SurfaceListsItsSeparationsAndAnyEntries)
    {
        PpfScribe scribe(1, None, Binary);
        scribe.Start();
        scribe.BeginSheet();
        CIP3SurfaceParameters surface;
        surface.side = -1;
        surface.separationNames = {"Cyan", "", "PANTONE (1)"};
        surface.optionalParameters = {{"CIP3AdmPSExtent", "1"}, {"A", ""}};
        scribe.painter.BeginSurface(surface);
        EXPECT_THAT(
            scribe.FinishSurface(),
            HasSubstr("\nCIP3BeginBack\n/CIP3AdmSeparationNames [ (Cyan) () (PANTONE (1)) ] def\n/A  def\n"
                      "/CIP3AdmPSExtent 1 def\nCIP3BeginPreviewImage\n\nCIP3EndPreviewImage\n"
                      "CIP3EndBack\n\nCIP3EndSheet\n\n"));
    }

    std::string SeparationHead(std::int32_t compression, std::int32_t encoding, std::int32_t height = 768)
    {
        PpfScribe scribe(1, compression, encoding);
        scribe.StartSurface();
        scribe.painter.parameters.width = 1024;
        scribe.painter.parameters.height = height;
        scribe.painter.parameters.xResolution = 300;
        scribe.painter.parameters.yResolution = 299.9994;
        scribe.painter.BeginSeparation();
        scribe.painter.EndSeparation();
        return Between(scribe.FinishSurface(), "/CIP3PreviewImageComponents 1 def\n", "CIP3PreviewImage ");
    }

    TEST(CIP3PainterSections, MatrixTurnsTheImageAndResolutionIsXThenY)
    {
        EXPECT_EQ(
            SeparationHead(RunLength, ASCII85), "/CIP3PreviewImageMatrix [1024 0 0 -768 0 768] def\n"
                                                "/CIP3PreviewImageResolution [300 299.999] def\n"
                                                "/CIP3PreviewImageCompression /RunLengthDecode def\n"
                                                "/CIP3PreviewImageEncoding /ASCII85Decode def\n");
        // The height that has no negative is negated, too.
        EXPECT_THAT(
            SeparationHead(None, Binary, std::numeric_limits<std::int32_t>::min()),
            HasSubstr("[1024 0 0 2147483648 0 -2147483648]"));
    }

    TEST(CIP3PainterSections, UnknownFormIsAnEmptyWordAndPassesTheDataOn)
    {
        EXPECT_THAT(
            SeparationHead(2, -1),
            HasSubstr("\n/CIP3PreviewImageCompression / def\n/CIP3PreviewImageEncoding / def\n"));
        EXPECT_EQ(PreviewData(FileOf(2, 3, {Hex("00 00"), Hex("01 02")})), Hex("FF FF FE FD"));
    }

    TEST(CIP3PainterSections, DataOfEachFormEndsAsItsDecoderExpects)
    {
        const struct
        {
            std::int32_t compression;
            std::int32_t encoding;
            std::vector<std::string> lines;
            std::string data;
        } cases[] = {
            {None, Binary, {}, ""},
            {None, Binary, {Hex("00 01 02 03"), Hex("FF 0A 0D 80")}, Hex("FF FE FD FC 00 F5 F2 7F")},
            {None, ASCIIHex, {}, ">"},
            {None, ASCIIHex, {Hex("00 01 02 03"), Hex("FF 0A 0D 80")}, "\nfffefdfc\n00f5f27f>"},
            {None, ASCII85, {}, "~>"},
            {None, ASCII85, {Hex("FF FF FF FF"), Hex("FE FD FC FB")}, "\nz\n!<N?+~>"},
            {None, ASCII85, {Hex("FF FF"), Hex("FF FF")}, "\n\nz~>"},
            {None, ASCII85, {Hex("FF")}, "\n!!~>"},
            {None, ASCII85, {Hex("FF FF FF")}, "\n!!!!~>"},
            {None, ASCII85, {"abc", "abc"}, "\n\nSt2CCSX]~>"},
            {RunLength, Binary, {}, Hex("80")},
            {RunLength, Binary, {Hex("00 00 00 00"), ""}, Hex("FD FF 80")},
            {RunLength, ASCIIHex, {}, "80>"},
            {RunLength, ASCIIHex, {Hex("00 00 00 00"), Hex("FF FF 00 80")}, "\nfdff\nff0001ff7f80>"},
            {RunLength, ASCII85, {}, "J,~>"},
            {RunLength, ASCII85, {Hex("00 00 00 00"), Hex("FF FF 00 A0")}, "\n\nrVult!WQMW~>"},
        };
        for (const auto& c : cases)
        {
            EXPECT_EQ(PreviewData(FileOf(c.compression, c.encoding, c.lines)), c.data)
                << "compression " << c.compression << " encoding " << c.encoding << " lines " << c.lines.size();
        }
    }

    TEST(CIP3PainterSections, NoByteReachesTheNextSeparation)
    {
        PpfScribe scribe(1, None, ASCII85);
        scribe.StartSurface({"A", "B"});
        scribe.Separation({Hex("00 00 00")});
        scribe.Separation({Hex("FF")});
        const std::string file = scribe.FinishSurface();
        EXPECT_EQ(PreviewData(file), "\ns8W*~>");
        EXPECT_EQ(PreviewData(file.substr(file.rfind("CIP3BeginSeparation"))), "\n!!~>");
    }

    TEST(CIP3PainterSections, LinesOfChangingLengthMakeOneStream)
    {
        std::vector<std::string> lines;
        std::string tokens;
        for (std::size_t i = 0; i < 300; ++i)
        {
            lines.push_back(Times(i % 5, Times(i, "\xFF")) + Literal(3 * i) + Times(i % 7, "ab"));
            tokens += PlainLoops::RunLength(PlainLoops::Invert(lines.back()));
        }
        std::string text = PreviewData(FileOf(RunLength, ASCII85, lines));
        ASSERT_EQ(std::count(text.begin(), text.end(), '\n'), 300);
        text.erase(std::remove(text.begin(), text.end(), '\n'), text.end());
        const std::string groups = PlainLoops::ASCII85(tokens + '\x80');
        EXPECT_TRUE(text.compare(0, groups.size(), groups) == 0);
    }

    TEST(CIP3PainterSections, LineIsInvertedInPlace)
    {
        PpfScribe scribe(1, RunLength, ASCII85);
        scribe.StartSurface();
        scribe.painter.BeginSeparation();
        std::string bytes = Hex("00 01 FF");
        scribe.painter.ProcessScanLine(LineOver(bytes));
        EXPECT_EQ(bytes, Hex("FF FE 00"));
    }
}
