// The library as a host has it: public headers, real TIFFs, the file that comes out.
#include <Sheetvane/SheetvaneConverter.h>
#include <rasteroutput/Exception.h>

#include "Failures.h"
#include "Memory.h"
#include "TempFolder.h"
#include "Tiffs.h"
#include "Values.h"

#include <gmock/gmock.h>

#include <clocale>
#include <locale>
#include <memory>

using namespace SheetvaneTest;
using namespace std::string_literals;
using Sheetvane::SheetvaneConverter;
using testing::HasSubstr;

namespace
{
    class Converter : public testing::Test
    {
    protected:
        Converter() { WriteTiff(black, {std::string(4, '\0'), "\xFF\xFF\0\x80"s}, 2); }

        /// Two sheets, the first with a front, the second with a back, of one separation each.
        void AddTwoSheets()
        {
            converter.AddSheet(Names({"Black"}), Files({black}), {}, {});
            converter.SetRequiredParameters(0, JobAndSheet("J", "S1"));
            converter.AddSheet({}, {}, Names({"Black"}), Files({black}));
            converter.SetRequiredParameters(1, JobAndSheet("J", "S2"));
        }

        std::string Written(const std::string& path)
        {
            EXPECT_EQ(FailureOf([&] { converter.CreateCIP3File(Location(path)); }), "[nothing]");
            return BytesOf(path);
        }

        TempFolder folder;
        const std::string black = folder / "black.tif";
        const std::string out = folder / "out.ppf";
        SheetvaneConverter converter;
    };

    std::string DirectoryLine(const std::string& numbersAndName)
    {
        return numbersAndName + std::string(238 - numbersAndName.size(), ' ') + " CIP3PPFDirEntry \n";
    }

    std::string Section(const std::string& sheetName, const std::string& side)
    {
        return "CIP3BeginSheet\n"
               "/CIP3AdmJobName (J) def\n"
               "/CIP3AdmSheetName (" +
               sheetName +
               ") def\n"
               "/CIP3AdmPSExtent [ 2 inch 1 inch ] def\n"
               "/CIP3TransferFilmCurveData [0.0 0.0 1.0 1.0] def\n"
               "/CIP3TransferPlateCurveData [0.0 0.0 1.0 1.0] def\n"
               "\n"
               "CIP3Begin" +
               side +
               "\n"
               "/CIP3AdmSeparationNames [ (Black) ] def\n"
               "CIP3BeginPreviewImage\n"
               "\n"
               "CIP3BeginSeparation\n"
               "/CIP3PreviewImageWidth 4 def\n"
               "/CIP3PreviewImageHeight 2 def\n"
               "/CIP3PreviewImageBitsPerComp 8 def\n"
               "/CIP3PreviewImageComponents 1 def\n"
               "/CIP3PreviewImageMatrix [4 0 0 -2 0 2] def\n"
               "/CIP3PreviewImageResolution [2 2] def\n"
               "/CIP3PreviewImageCompression /RunLengthDecode def\n"
               "/CIP3PreviewImageEncoding /ASCIIHexDecode def\n"
               "CIP3PreviewImage \n"
               "fdff\n"
               "ff0001ff7f80>\n"
               "CIP3EndSeparation\n"
               "\n"
               "CIP3EndPreviewImage\n"
               "CIP3End" +
               side +
               "\n"
               "\n"
               "CIP3EndSheet\n"
               "\n";
    }

    /// A comma for the point, and digits in groups.
    class CommaPunctuation : public std::numpunct<char>
    {
    protected:
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };

    /// A host that has set a locale of its own, in C++ and, where the system has one, in C.
    class HostLocale
    {
    public:
        HostLocale()
            : m_former(std::locale::global(std::locale(std::locale::classic(), new CommaPunctuation)))
            , m_formerC(std::setlocale(LC_ALL, nullptr))
        {
            std::setlocale(LC_ALL, "de_DE.UTF-8");
        }
        ~HostLocale()
        {
            std::locale::global(m_former);
            std::setlocale(LC_ALL, m_formerC.c_str());
        }

    private:
        std::locale m_former;
        std::string m_formerC;
    };

    // Ends after the library's own tables, as a host's global may.
    std::unique_ptr<SheetvaneConverter> globalConverter;
}

TEST_F(Converter, TwoSheetsAreWrittenByteForByte)
{
    AddTwoSheets();
    converter.SetEncoding(SheetvaneConverter::CIP3EncodingASCIIHex);
    const std::string expected = "%!PS-Adobe-3.0\n%%CIP3-File Version 3.0\n%\xE2\xE3\xCF\xD3\n\n"
                                 "CIP3BeginPPFDirectory\n" +
                                 DirectoryLine("0000000601 0000000712 (S1)") +
                                 DirectoryLine("0000001313 0000000710 (S2)") + "CIP3EndPPFDirectory\n\n" +
                                 Section("S1", "Front") + Section("S2", "Back") + "%%CIP3EndOfFile\n";
    EXPECT_EQ(expected.size(), 2039u);
    EXPECT_EQ(Written(out), expected);
}

TEST_F(Converter, SecondFileOfTheSameJobHasTheSameBytes)
{
    AddTwoSheets();
    const std::string first = Written(out);
    EXPECT_THAT(first, HasSubstr("/CIP3PreviewImageEncoding /ASCII85Decode def\n"));
    EXPECT_EQ(Written(out), first);
    EXPECT_EQ(Written(folder / "new/folder/out.ppf"), first);

    converter.SetEncoding(SheetvaneConverter::CIP3EncodingBinary);
    converter.SetCompression(SheetvaneConverter::CIP3CompressionNone);
    EXPECT_THAT(Written(out), HasSubstr("CIP3PreviewImage \xFF\xFF\xFF\xFF\0\0\xFF\x7F\nCIP3End"s));
}

TEST_F(Converter, ChoicesOutsideTheirEnumerationAreTheLastOne)
{
    AddTwoSheets();
    const std::string byDefault = Written(out);
    converter.SetCompression(static_cast<SheetvaneConverter::CIP3Compression>(7));
    for (const int encoding : {2, 3, -1})
    {
        converter.SetEncoding(static_cast<SheetvaneConverter::CIP3Encoding>(encoding));
        EXPECT_EQ(Written(out), byDefault) << encoding;
    }
}

TEST_F(Converter, ParametersStandInTheSection)
{
    AddTwoSheets();
    converter.SetOptionalParameters(
        0, DictOf(
               {{"alpha", KX_TDouble(0.5)},
                {"CIP3AdmPSExtent", Text("[ 8.5 inch 11 inch ]")},
                {"Zeta", DictOf({{"value", KX_TInt32(135)}, {"units", Text("g")}})}}));
    EXPECT_THAT(
        Written(out), HasSubstr("/CIP3AdmSheetName (S1) def\n"
                                "/CIP3AdmPSExtent [ 8.5 inch 11 inch ] def\n"
                                "/CIP3TransferFilmCurveData [0.0 0.0 1.0 1.0] def\n"
                                "/CIP3TransferPlateCurveData [0.0 0.0 1.0 1.0] def\n"
                                "/Zeta 135 g def\n"
                                "/alpha 0.500000 def\n\n"));
}

TEST_F(Converter, LocaleOfTheHostChangesNothing)
{
    WriteTiff(black, std::vector<std::string>(3, std::string(1200, '\x55')), 50.8f);
    AddTwoSheets();
    converter.SetOptionalParameters(0, DictOf({{"Copies", KX_TInt32(1500000)}, {"Scale", KX_TDouble(12345.5)}}));
    const std::string before = Written(out);
    const HostLocale comma;
    converter.SetOptionalParameters(0, DictOf({{"Copies", KX_TInt32(1500000)}, {"Scale", KX_TDouble(12345.5)}}));
    EXPECT_EQ(Written(out), before);
    EXPECT_THAT(before, HasSubstr("/Scale 12345.500000 def\n"));
}

TEST_F(Converter, MoreLinesTakeNoMoreAllocations)
{
    AddTwoSheets();
    const auto allocationsFor = [&](std::size_t lines)
    {
        WriteTiff(black, std::vector<std::string>(lines, std::string(500, '\x55')), 2);
        const std::size_t before = Allocations();
        converter.CreateCIP3File(Location(out));
        return Allocations() - before;
    };
    allocationsFor(200); // whatever is made once
    EXPECT_EQ(allocationsFor(200), allocationsFor(2000));
}

TEST_F(Converter, FailedSheetsCountAndTheJobGoesOn)
{
    EXPECT_EQ(converter.GetNumSheets(), 0u);
    EXPECT_EQ(FailureOf([&] { converter.AddSheet({}, {}, {}, {}); }), "No input files specified");
    EXPECT_EQ(converter.GetNumSheets(), 1u);
    AddTwoSheets();
    EXPECT_EQ(converter.GetNumSheets(), 3u);
    EXPECT_EQ(FailureOf([&] { converter.SetRequiredParameters(3, {}); }), "Sheet index out of bounds");
    EXPECT_EQ(FailureOf([&] { converter.CreateCIP3File(Location(out)); }), "Problem converting TIFF files to CIP3");
}

TEST_F(Converter, TiffThatIsMissingOrDamagedFailsAndSaysNothingElsewhere)
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    AddTwoSheets();
    WriteBytes(out, "older");
    const std::string whole = BytesOf(black);
    for (const std::string& content : {std::string(), std::string("no TIFF"), whole.substr(0, whole.size() / 2)})
    {
        WriteBytes(black, content);
        EXPECT_EQ(FailureOf([&] { converter.CreateCIP3File(Location(out)); }), "Problem converting TIFF files to CIP3")
            << content.size();
        EXPECT_EQ(BytesOf(out), "") << content.size();
    }
    std::filesystem::remove(black);
    EXPECT_EQ(FailureOf([&] { converter.CreateCIP3File(Location(out)); }), "Problem converting TIFF files to CIP3");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

template <class Base>
class CaughtAs : public testing::Test
{
};
using Bases = testing::Types<
    KX_ECIP3Exception, KX_EException, KX_TObject, KX_IInterface, KX_IThrowable, KX_IPackable, KX_IPrintable>;
TYPED_TEST_SUITE(CaughtAs, Bases, );

TYPED_TEST(CaughtAs, FailureIsCaughtAsEachOfItsClasses)
{
    SheetvaneConverter converter;
    try
    {
        converter.SetRequiredParameters(0, {});
        FAIL() << "nothing thrown";
    }
    catch (const TypeParam& failure)
    {
        EXPECT_STREQ(failure.ClassName(), "KX_ECIP3Exception");
        EXPECT_NE(failure.KX_Cast("KX_EException"), nullptr);
    }
}

TEST(OneConverter, SecondIsRefusedWhileTheFirstWorks)
{
    SheetvaneConverter first;
    try
    {
        const SheetvaneConverter second;
        FAIL() << "nothing thrown";
    }
    catch (const RasterOutput::Exception& failure)
    {
        EXPECT_STREQ(failure.what(), "CIP3Painter painter identifier already registered");
    }
    EXPECT_THROW(SheetvaneConverter(), Tarnel::Exception);
    EXPECT_EQ(first.GetNumSheets(), 0u);
}

// Last: what it shows is that the process ends well.
TEST(OneConverter, MayOutliveTheLibrarysTables)
{
    globalConverter = std::make_unique<SheetvaneConverter>();
    EXPECT_EQ(globalConverter->GetNumSheets(), 0u);
}
