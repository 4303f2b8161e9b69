// The library as a host has it: public headers, real TIFFs, the file that comes out.
#include "tests/HostLocale.h"
#include "tests/Sheetvane/Failures.h"
#include "tests/Sheetvane/Values.h"
#include "tests/TwoSheetExample.h"
#include "tests/support/Allocations.h"
#include "tests/support/Folder.h"
#include "tests/support/PlainTiff.h"

#include <Sheetvane/SheetvaneConverter.h>

#include <gmock/gmock.h>

#include <rasteroutput/Exception.h>

namespace SheetvaneTest
{
    using namespace std::string_literals;
    using Sheetvane::SheetvaneConverter;
    using testing::HasSubstr;

    namespace
    {
        using TestSupport::PlainTiff;

        class Converter : public testing::Test
        {
        protected:
            Converter() { folder.Write("black.tif", PlainTiff({std::string(4, '\0'), "\xFF\xFF\0\x80"s})); }

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
                return TestSupport::Folder::BytesOf(path);
            }

            TestSupport::Folder folder;
            const std::string black = folder / "black.tif";
            const std::string out = folder / "out.ppf";
            SheetvaneConverter converter;
        };
    }

    TEST_F(Converter, TwoSheetsAreWrittenByteForByte)
    {
        AddTwoSheets();
        converter.SetEncoding(SheetvaneConverter::CIP3EncodingASCIIHex);
        const std::string written = Written(out);
        EXPECT_EQ(written.size(), 2039u);
        EXPECT_EQ(written, TwoSheetExample::File());
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

    TEST_F(Converter, LocaleOfTheHostChangesNothing)
    {
        folder.Write("black.tif", PlainTiff(std::vector<std::string>(3, std::string(1200, '\x55')), 50.8));
        AddTwoSheets();
        converter.SetOptionalParameters(0, DictOf({{"Copies", KX_TInt32(1500000)}, {"Scale", KX_TDouble(12345.5)}}));
        const std::string before = Written(out);
        const HostLocale strange;
        converter.SetOptionalParameters(0, DictOf({{"Copies", KX_TInt32(1500000)}, {"Scale", KX_TDouble(12345.5)}}));
        EXPECT_EQ(Written(out), before);
        EXPECT_THAT(before, HasSubstr("/Scale 12345.500000 def\n"));
    }

    TEST_F(Converter, MoreLinesTakeNoMoreAllocations)
    {
        AddTwoSheets();
        const auto allocationsFor = [&](std::size_t lines)
        {
            folder.Write("black.tif", PlainTiff(100, lines, 0x55));
            TestSupport::AllowAllocations();
            converter.CreateCIP3File(Location(out));
            return TestSupport::AllocationCount();
        };
        for (const int form : {0, 1, 2, 3, 4, 5})
        {
            converter.SetCompression(static_cast<SheetvaneConverter::CIP3Compression>(form / 3));
            converter.SetEncoding(static_cast<SheetvaneConverter::CIP3Encoding>(form % 3));
            allocationsFor(200); // whatever is made once
            EXPECT_EQ(allocationsFor(200), allocationsFor(2000)) << form;
        }
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
}
