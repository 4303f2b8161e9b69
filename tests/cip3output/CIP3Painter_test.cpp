// A document's life: header, directory, closing, the file on disk.
#include "Bytes.h"
#include "PpfScribe.h"
#include "rasteroutput/ScanLineRef.h"

#include <gmock/gmock.h>

#include <codecvt>
#include <locale>

namespace PpfTest
{
    using namespace RasterOutput;
    using testing::EndsWith;
    using testing::HasSubstr;
    using testing::StartsWith;

    const std::string Header = "%!PS-Adobe-3.0\n%%CIP3-File Version 3.0\n%\xE2\xE3\xCF\xD3\n\n";
    const std::string Trailer = "%%CIP3EndOfFile\n";

    std::string DirectoryLine(const std::string& numbers, const std::string& name)
    {
        return numbers + " (" + name + ")" + std::string(214 - name.size(), ' ') + " CIP3PPFDirEntry \n";
    }

    std::string SheetOfTheExample(const std::string& name, const std::string& side)
    {
        return "CIP3BeginSheet\n/CIP3AdmJobName (J) def\n/CIP3AdmSheetName (" + name +
               ") def\n/CIP3AdmPSExtent [ 2 inch 1 inch ] def\n/CIP3TransferFilmCurveData [0.0 0.0 1.0 1.0] "
               "def\n/CIP3TransferPlateCurveData [0.0 0.0 1.0 1.0] def\n\nCIP3Begin" +
               side +
               "\n/CIP3AdmSeparationNames [ (Black) ] def\nCIP3BeginPreviewImage\n\nCIP3BeginSeparation\n"
               "/CIP3PreviewImageWidth 4 def\n/CIP3PreviewImageHeight 2 def\n/CIP3PreviewImageBitsPerComp 8 def\n"
               "/CIP3PreviewImageComponents 1 def\n/CIP3PreviewImageMatrix [4 0 0 -2 0 2] def\n"
               "/CIP3PreviewImageResolution [2 2] def\n/CIP3PreviewImageCompression /RunLengthDecode def\n"
               "/CIP3PreviewImageEncoding /ASCIIHexDecode def\nCIP3PreviewImage \nfdff\nff0001ff7f80>\n"
               "CIP3EndSeparation\n\nCIP3EndPreviewImage\nCIP3End" +
               side + "\n\nCIP3EndSheet\n\n";
    }

    std::string WriteExample(PpfScribe& scribe)
    {
        const std::vector<std::string> lines = {Hex("00 00 00 00"), Hex("FF FF 00 80")};
        scribe.Start();
        for (const std::int32_t side : {0, 1})
        {
            scribe.BeginSheet(side == 0 ? "S1" : "S2");
            scribe.BeginSurface(side);
            scribe.Separation(lines);
            scribe.EndSurface();
            scribe.EndSheet();
        }
        return scribe.Finish();
    }

    std::string Example()
    {
        return Header + "CIP3BeginPPFDirectory\n" + DirectoryLine("0000000601 0000000712", "S1") +
               DirectoryLine("0000001313 0000000710", "S2") + "CIP3EndPPFDirectory\n\n" +
               SheetOfTheExample("S1", "Front") + SheetOfTheExample("S2", "Back") + Trailer;
    }

    TEST(CIP3Painter, WritesTheExampleOfTheFormatByteForByte)
    {
        PpfScribe scribe(2, RunLength, ASCIIHex);
        const std::string file = WriteExample(scribe);
        EXPECT_EQ(file.size(), 2039U);
        EXPECT_EQ(file, Example());
    }

    /// Makes a locale of strange habits the global one for a while, as a host may do at any time.
    class StrangeGlobalLocale
    {
    public:
        StrangeGlobalLocale()
            : before(std::locale::global(
                  std::locale(std::locale(std::locale::classic(), new Punctuation), new Conversion)))
        {
        }
        ~StrangeGlobalLocale() { std::locale::global(before); }

    private:
        struct Punctuation : std::numpunct<char>
        {
            char do_decimal_point() const override { return ','; }
            char do_thousands_sep() const override { return '.'; }
            std::string do_grouping() const override { return "\1"; }
        };
        struct Conversion : std::codecvt<char, char, std::mbstate_t>
        {
            bool do_always_noconv() const noexcept override { return false; }
            result do_out(
                std::mbstate_t&, const char* from, const char* fromEnd, const char*& fromNext, char* to, char* toEnd,
                char*& toNext) const override
            {
                for (; from != fromEnd && to != toEnd; ++from, ++to)
                {
                    *to = '?';
                }
                fromNext = from;
                toNext = to;
                return ok;
            }
        };
        std::locale before;
    };

    TEST(CIP3Painter, GlobalLocaleDoesNotReachTheFile)
    {
        const StrangeGlobalLocale strange;
        PpfScribe scribe(2, RunLength, ASCIIHex);
        scribe.sheet.extentX = 2;
        EXPECT_EQ(WriteExample(scribe), Example());
    }

    TEST(CIP3Painter, SheetCountDecidesOnTheDirectory)
    {
        PpfScribe none(0, RunLength, ASCII85);
        none.Start();
        EXPECT_EQ(none.Finish(), Header + Trailer);

        PpfScribe one(1, RunLength, ASCII85);
        one.Start();
        one.Sheet("S1", {"line"});
        const std::string file = one.Finish();
        EXPECT_THAT(file, StartsWith(Header + "CIP3BeginSheet\n"));
        EXPECT_THAT(file, EndsWith("CIP3EndSheet\n\n" + Trailer));
    }

    TEST(CIP3Painter, DirectoryDescribesSheetsThatFollowEachOtherWithoutAGap)
    {
        constexpr std::size_t sheets = 300;
        PpfScribe scribe(sheets, None, Binary);
        scribe.Start();
        for (std::size_t i = 0; i < sheets; ++i)
        {
            scribe.Sheet(std::string(1 + i % 214, 'n'), {std::string(i * 7, 'x')});
        }
        const std::string file = scribe.Finish();
        std::size_t expected = 89 + 256 * sheets;
        for (std::size_t i = 0; i < sheets; ++i)
        {
            const std::string line = file.substr(68 + 256 * i, 256);
            ASSERT_EQ(std::stoul(line.substr(0, 10)), expected) << "sheet " << i;
            ASSERT_EQ(file.substr(expected, 15), "CIP3BeginSheet\n") << "sheet " << i;
            expected += std::stoul(line.substr(11, 10));
        }
        EXPECT_EQ(file.substr(expected), Trailer);
    }

    TEST(CIP3Painter, LongestSheetNameFillsItsDirectoryField)
    {
        const std::string name(214, 'n');
        PpfScribe scribe(2, None, Binary);
        scribe.Start();
        scribe.Sheet(name, {});
        scribe.Sheet("S2", {});
        const std::string file = scribe.Finish();
        EXPECT_EQ(file[68 + 237], ')');
        EXPECT_EQ(file.substr(68 + 238, 18), " CIP3PPFDirEntry \n");
        EXPECT_THAT(file, HasSubstr("/CIP3AdmSheetName (" + name + ") def\n"));
    }

    TEST(CIP3Painter, FileStaysEmptyUntilItIsComplete)
    {
        PpfScribe scribe(1, RunLength, ASCII85);
        EXPECT_FALSE(scribe.FileExists());
        scribe.Start();
        scribe.Sheet("S1", std::vector<std::string>(100, Literal(100000)));
        EXPECT_TRUE(scribe.FileExists());
        EXPECT_EQ(scribe.File(), "");
        EXPECT_GT(scribe.Finish().size(), 10000000U);
    }

    TEST(CIP3Painter, SecondDocumentStartsAnew)
    {
        PpfScribe scribe(2, RunLength, ASCIIHex);
        const std::string first = WriteExample(scribe);
        EXPECT_EQ(WriteExample(scribe), first);
    }

    TEST(CIP3Painter, FullDiskIsNotReported)
    {
        PpfScribe scribe(1, RunLength, ASCII85);
        scribe.document.filePath = L"/dev/full";
        scribe.Start();
        scribe.Sheet("S1", {Literal(100000)});
        EXPECT_NO_THROW(scribe.painter.Finalize());
    }

    TEST(CIP3Painter, FileNameThatIsNoUtf8IsOpened)
    {
        PpfScribe scribe(0, None, Binary);
        const std::string folder = std::filesystem::path(scribe.document.filePath).parent_path().string();
        scribe.document.filePath = std::filesystem::path(folder).wstring() + L"/a\xDCFF.ppf";
        scribe.Start();
        scribe.painter.Finalize();
        EXPECT_TRUE(std::filesystem::exists(folder + "/a\xFF.ppf"));
    }
}
