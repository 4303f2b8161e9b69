// Every failure of the painter: a good document, one thing damaged, the class, the exact text and the code.
#include "cip3output/CIP3ParameterExtractor.h"
#include "rasteroutput/Exception.h"
#include "rasteroutput/ExtractionDispatcher.h"
#include "tests/cip3output/Bytes.h"
#include "tests/cip3output/Failures.h"
#include "tests/cip3output/PpfScribe.h"

#include <gmock/gmock.h>

#include <limits>
#include <typeinfo>

namespace CIP3OutputTest
{
    using namespace RasterOutput;

    const char InvalidSheet[] = "Invalid sheet parameters";

    class CIP3PainterFailures : public testing::Test
    {
    protected:
        PpfScribe scribe{1, RunLength, ASCII85};
    };

    TEST_F(CIP3PainterFailures, PathThatCannotBeOpenedLeavesThePainterHalfOpen)
    {
        const std::wstring good = scribe.document.filePath;
        for (const std::wstring& path :
             {std::wstring(), good + L"/nobody", std::wstring(L"/no such folder/x"), good + std::wstring(L"\0.x", 3),
              good + L"\xD800"})
        {
            PpfScribe other(1, RunLength, ASCII85);
            other.document.filePath = path;
            EXPECT_THAT([&] { other.Start(); }, FailsWith("Could not open CIP3 file", 0)) << path.size();
            EXPECT_THAT([&] { other.Start(); }, FailsWith("InitializePainter called with file still open", 1));
        }
        EXPECT_FALSE(scribe.FileExists());
    }

    TEST_F(CIP3PainterFailures, SecondInitializeLeavesTheOpenDocumentAsItWas)
    {
        scribe.Start();
        scribe.BeginSheet();
        EXPECT_THAT([&] { scribe.Start(); }, FailsWith("InitializePainter called with file still open", 1));
        scribe.EndSheet();
        EXPECT_THAT(scribe.Finish(), testing::EndsWith("CIP3EndSheet\n\n%%CIP3EndOfFile\n"));
    }

    TEST_F(CIP3PainterFailures, SheetBeyondTheAnnouncedNumberWritesNothing)
    {
        scribe.Start();
        scribe.Sheet("S1", {});
        EXPECT_THAT([&] { scribe.BeginSheet("S2"); }, FailsWith("More sheets than expected in CIP3 document", 2));
        EXPECT_THAT(scribe.Finish(), testing::Not(testing::HasSubstr("S2")));
    }

    TEST_F(CIP3PainterFailures, SheetIsInvalidForEachOfItsParameters)
    {
        const double notANumber = std::numeric_limits<double>::quiet_NaN();
        const auto refuses = [](std::uint32_t sheetCount, const std::string& name, auto damage)
        {
            PpfScribe other(sheetCount, RunLength, ASCII85);
            other.Start();
            // A usable text for the extent does not make up for a bad extent.
            other.sheet.optionalParameters["CIP3AdmPSExtent"] = "[ 1 inch 1 inch ]";
            damage(other.sheet);
            EXPECT_THAT([&] { other.BeginSheet(name); }, FailsWith(InvalidSheet, 3));
        };
        for (const double extent : {0.0, -1.0, notANumber})
        {
            refuses(1, "S1", [extent](CIP3SheetParameters& sheet) { sheet.extentX = extent; });
            refuses(1, "S1", [extent](CIP3SheetParameters& sheet) { sheet.extentY = extent; });
        }
        refuses(1, "S1", [](CIP3SheetParameters& sheet) { sheet.jobName.clear(); });
        refuses(1, std::string(215, 'n'), [](CIP3SheetParameters&) {});
        refuses(2, std::string(215, 'n'), [](CIP3SheetParameters&) {});
        refuses(2, "", [](CIP3SheetParameters&) {});
    }

    TEST_F(CIP3PainterFailures, InvalidSheetWritesNothingAndCanBeBegunAgain)
    {
        PpfScribe other(2, RunLength, ASCII85);
        other.Start();
        EXPECT_THAT([&] { other.BeginSheet(std::string(5000, 'n')); }, FailsWith(InvalidSheet, 3));
        other.Sheet("S1", {});
        // The second one's name is left in the directory, cut to its field, and nothing else has moved.
        EXPECT_THAT([&] { other.BeginSheet(std::string(5000, 'n')); }, FailsWith(InvalidSheet, 3));
        const std::string file = other.Finish();
        EXPECT_EQ(file.find("CIP3BeginSheet\n"), 601U);
        EXPECT_EQ(file.substr(68 + 255, 1), "\n");
        EXPECT_EQ(file.substr(68 + 511, 22), "\nCIP3EndPPFDirectory\n\n");
    }

    TEST_F(CIP3PainterFailures, SurfaceWithoutSeparationWritesNothing)
    {
        scribe.Start();
        scribe.BeginSheet();
        EXPECT_THAT([&] { scribe.BeginSurface(0, {}); }, FailsWith("Invalid surface parameters", 4));
        scribe.EndSheet();
        EXPECT_THAT(scribe.Finish(), testing::HasSubstr("def\n\nCIP3EndSheet\n"));
    }

    TEST_F(CIP3PainterFailures, SeparationOfAnotherRasterWritesNothing)
    {
        scribe.StartSurface();
        for (const auto& [bits, planar] : std::vector<std::pair<unsigned, unsigned>>{{1, 1}, {16, 1}, {8, 0}, {8, 2}})
        {
            scribe.painter.parameters.bitsPerComponent = bits;
            scribe.painter.parameters.planar = planar;
            EXPECT_THAT(
                [&] { scribe.painter.BeginSeparation(); }, FailsWith("CIP3 painter expects 8 bit planar data", 5))
                << bits << " " << planar;
        }
        EXPECT_THAT(scribe.FinishSurface(), testing::HasSubstr("CIP3BeginPreviewImage\n\nCIP3EndPreviewImage\n"));
    }

    TEST_F(CIP3PainterFailures, LineOfAnotherRasterIsLeftAsItIs)
    {
        scribe.StartSurface();
        scribe.painter.BeginSeparation();
        std::string bytes = "CMYK";
        ScanLineRef line = LineOver(bytes);
        line.componentsPerSample = 4;
        line.planar = 0;
        EXPECT_THAT([&] { scribe.painter.ProcessScanLine(line); }, FailsWith("Interleaved data not supported", 5));
        EXPECT_EQ(bytes, "CMYK");
    }

    TEST(CIP3PainterException, IsCaughtAsEachOfItsBasesAndIsNoStandardException)
    {
        const CIP3PainterException thrown("text", 7);
        const CIP3PainterException copy(thrown);
        EXPECT_STREQ(copy.what(), "text");
        EXPECT_EQ(copy.LocalisedMessage(), "text");
        EXPECT_STREQ(copy.ModuleName(), "CIP3Painter");
        EXPECT_EQ(copy.Code(), 7);
        EXPECT_TRUE(copy.params.empty());
        EXPECT_THROW(throw thrown, Tarnel::Exception);
        EXPECT_THROW(throw thrown, Tarnel::ExceptionParams);
        using Localisable = Tarnel::LocalisableException<CIP3PainterException, Tarnel::Localiser<CIP3PainterException>>;
        EXPECT_THROW(throw thrown, Localisable);
        EXPECT_FALSE((std::is_base_of_v<RasterOutput::Exception, CIP3PainterException>));
        EXPECT_FALSE((std::is_base_of_v<std::exception, CIP3PainterException>));
    }
}
