// What the inks of a file are called, in each of the places that writers have for it, and files that lie about them.
#include "tests/layers/rasterfeed/Delivery.h"
#include "tests/support/TiffEditor.h"
#include "tests/support/TiffMaker.h"

#include <gmock/gmock.h>

#include <string_view>

namespace RasterFeedTest
{
    namespace
    {
        using testing::HasSubstr;
        using testing::StartsWith;
        using TestSupport::ImageResource;
        using TestSupport::MakePages;
        using TestSupport::MixedInks;
        using TestSupport::PascalNames;
        using TestSupport::TiffEditor;
        using TestSupport::TiffForm;
        using TestSupport::UnicodeNames;
        using namespace std::string_literals;

        constexpr std::uint16_t Unicode = 1045;
        constexpr std::uint16_t Pascal = 1006;

        TiffForm Page(std::uint16_t samples)
        {
            TiffForm form;
            form.width = 2;
            form.height = 1;
            form.samples = samples;
            form.photometric = PHOTOMETRIC_SEPARATED;
            return form;
        }

        /// The inks as "page.channel name" with commas between, or the reason.
        std::string Inks(const std::string& tiff)
        {
            const RasterFeedInkList list = InksOf(tiff);
            EXPECT_EQ(list.inks.empty(), !list.reason.empty());
            std::string text = list.reason;
            for (const RasterFeedInk& ink : list.inks)
            {
                text += (text.empty() ? "" : ", ") + std::to_string(ink.page) + '.' + std::to_string(ink.channel) +
                        ' ' + ink.name;
            }
            return text;
        }

        std::string Inks(const std::vector<TiffForm>& pages)
        {
            return Inks(MakePages(pages, MixedInks(8)));
        }

        /// Those of a page of five samples with these image resources.
        std::string Fifth(const std::string& imageResources, std::uint16_t samples = 5)
        {
            TiffForm form = Page(samples);
            form.extraSamples.assign(samples - 4u, EXTRASAMPLE_UNSPECIFIED);
            form.imageResources = imageResources;
            const std::string inks = Inks({form});
            const std::string process = "1.1 Cyan, 1.2 Magenta, 1.3 Yellow, 1.4 Black, ";
            return inks.rfind(process, 0) == 0 ? inks.substr(process.size()) : inks;
        }

        std::string Nameless(int page, int sample)
        {
            return "page " + std::to_string(page) + ": sample " + std::to_string(sample) +
                   " has no name; name the inks by hand, this one by \"page\": " + std::to_string(page) +
                   " and \"channel\": " + std::to_string(sample);
        }
    }

    TEST(InkNames, ProcessInksInkNamesAndPageNames)
    {
        TiffForm form = Page(4);
        EXPECT_EQ(Inks({form}), "1.1 Cyan, 1.2 Magenta, 1.3 Yellow, 1.4 Black");
        form.inkSet = INKSET_CMYK;
        EXPECT_EQ(Inks({form}), "1.1 Cyan, 1.2 Magenta, 1.3 Yellow, 1.4 Black");
        form.inkSet = INKSET_MULTIINK;
        EXPECT_EQ(Inks({form}), Nameless(1, 1));
        form.inkNames = "Orange\0Green\0Violet\0Gold\0"s;
        EXPECT_EQ(Inks({form}), "1.1 Orange, 1.2 Green, 1.3 Violet, 1.4 Gold");
        EXPECT_EQ(Inks({Page(3)}), Nameless(1, 1));

        TiffForm single = Page(1);
        single.photometric = PHOTOMETRIC_MINISBLACK;
        single.pageName = "Varnish";
        TiffForm thumbnail = single;
        thumbnail.subfileType = FILETYPE_REDUCEDIMAGE;
        TiffForm mask = single;
        mask.subfileType = FILETYPE_MASK;
        TiffForm white = Page(1);
        white.pageName = "not this";
        white.inkNames = "White\0"s;
        EXPECT_EQ(
            Inks({Page(4), thumbnail, single, mask, white}),
            "1.1 Cyan, 1.2 Magenta, 1.3 Yellow, 1.4 Black, 3.1 Varnish, 5.1 White");
        EXPECT_EQ(Inks({single, Page(1)}), Nameless(2, 1));
        EXPECT_THAT(Inks({thumbnail, mask}), HasSubstr("; a page with an ink is needed"));
    }

    TEST(InkNames, AreUtf8OrElseIso8859)
    {
        TiffForm form = Page(1);
        for (const auto& [written, read] : std::initializer_list<std::pair<std::string, std::string>>{
                 {"Gr\xc3\xbcn", "Gr\xc3\xbcn"},
                 {"Gr\xfcn", "Gr\xc3\xbcn"},
                 {"\xf0\x9f\x8e\xa8", "\xf0\x9f\x8e\xa8"},
                 {"\xc3", "\xc3\x83"},
                 {"\xed\xa0\x80", "\xc3\xad\xc2\xa0\xc2\x80"}}) // a surrogate is not a character
        {
            form.pageName = written;
            EXPECT_EQ(Inks({form}), "1.1 " + read);
        }
    }

    TEST(InkNames, FurtherSamplesAreNamedByTheImageResources)
    {
        const std::string other = ImageResource(1005, "odd");
        const std::string pascal = ImageResource(Pascal, PascalNames({"Spot 1", "Gr\xfcn"}));
        const std::string unicode = ImageResource(Unicode, UnicodeNames({u"Silber\0"s, u"\u7d05\U0001f3a8"s}));
        EXPECT_EQ(Fifth(other + pascal), "1.5 Spot 1");
        EXPECT_EQ(Fifth(other + pascal, 6), "1.5 Spot 1, 1.6 Gr\xc3\xbcn");
        EXPECT_EQ(Fifth(pascal + other + unicode, 6), "1.5 Silber, 1.6 \xe7\xb4\x85\xf0\x9f\x8e\xa8");
        EXPECT_EQ(Fifth(pascal, 7), Nameless(1, 7));
        EXPECT_EQ(Fifth(""), Nameless(1, 5));
        EXPECT_EQ(Fifth(ImageResource(Pascal, PascalNames({""}))), Nameless(1, 5));
        // A block of another owner is passed over, and its own name too.
        EXPECT_EQ(Fifth("MeSa" + pascal.substr(4) + "8BIM\x03\xee\x04long\0\0\0\0\x02\x01X"s), "1.5 X");

        // Alpha is not an ink, wherever it stands, and has its name among the others.
        TiffForm form = Page(7);
        form.extraSamples = {EXTRASAMPLE_UNASSALPHA, EXTRASAMPLE_UNSPECIFIED, EXTRASAMPLE_ASSOCALPHA};
        form.imageResources = ImageResource(Pascal, PascalNames({"Transparency", "Gold", "Alpha 1"}));
        EXPECT_EQ(Inks({form}), "1.1 Cyan, 1.2 Magenta, 1.3 Yellow, 1.4 Black, 1.6 Gold");
        form.inkNames = "A\0B\0C\0D\0E\0"s;
        EXPECT_EQ(Inks({form}), "1.1 A, 1.2 B, 1.3 C, 1.4 D, 1.6 E");
    }

    TEST(InkNames, WhatIsMissingEmptyOrTwiceIsRefusedWithItsPlace)
    {
        TiffForm form = Page(4);
        form.inkNames = "A\0B\0C\0"s;
        EXPECT_EQ(Inks({form}), Nameless(1, 4));
        form.inkNames = "A\0\0C\0D\0"s;
        EXPECT_EQ(Inks({form}), Nameless(1, 2));
        TiffForm black = Page(1);
        black.pageName = "Black";
        EXPECT_EQ(
            Inks({Page(4), black}), "page 2: sample 1 has the name of page 1, sample 4, \"Black\"; name the inks by "
                                    "hand, this one by \"page\": 2 and \"channel\": 1");
        TiffForm rgb = Page(3);
        rgb.photometric = PHOTOMETRIC_RGB;
        EXPECT_EQ(
            Inks({Page(4), rgb}), "page 2: 3 samples per pixel (RGB); one, and 1 to 32 of Separated, are accepted");
        EXPECT_EQ(Inks("no TIFF"), "not a TIFF file; TIFF and BigTIFF are accepted");
    }

    TEST(InkNames, LengthsThatLieFindNoNames)
    {
        const auto claim = [](const TiffForm& form, std::uint16_t tag, std::uint64_t count, std::uint64_t offset)
        {
            TiffEditor editor(MakePages({form}, MixedInks(8)));
            editor.SetRaw(tag, TIFF_ASCII, count, offset);
            return Inks(editor.Bytes());
        };
        EXPECT_THAT(
            claim(Page(1), TIFFTAG_PAGENAME, 0xffffffff, 8),
            HasSubstr("PageName of 4294967295 bytes; up to 1024 are accepted"));
        EXPECT_THAT(claim(Page(4), TIFFTAG_INKNAMES, 30000, 8), HasSubstr("beyond the end of the file"));
        EXPECT_EQ(claim(Page(5), TIFFTAG_PHOTOSHOP, 0xffffffff, 8), Nameless(1, 5));
        EXPECT_EQ(claim(Page(5), TIFFTAG_PHOTOSHOP, 60000, 0xfffffff0), Nameless(1, 5));

        // Blocks and names that reach beyond what they lie in.
        const std::string header = "8BIM\x04\x15\0\0"s;
        EXPECT_EQ(Fifth(header + "\x7f\xff\xff\xff\0\0\0\1\0A"s), Nameless(1, 5));
        EXPECT_EQ(Fifth(header + "\0\0\0\6\x7f\xff\xff\xff\0A"s), Nameless(1, 5));
        EXPECT_EQ(Fifth(header + "\0\0\0\6\0\0\0\2\0A"s), Nameless(1, 5));
        EXPECT_EQ(Fifth(header + "\0\0\0\6\0\0\0\1\xd8\0"s), Nameless(1, 5)); // half a character
        EXPECT_EQ(Fifth("8BIM\x04\x15\xff" + std::string(20, 'x')), Nameless(1, 5));
        EXPECT_EQ(Fifth("8BIM\x03\xee\0\0\0\0\0\2\5A"s), Nameless(1, 5));
        // A name of 3000 units, and a block cut in its head.
        EXPECT_EQ(Fifth(ImageResource(Unicode, UnicodeNames({std::u16string(3000, u'x')}))), Nameless(1, 5));
        EXPECT_EQ(Fifth("8BIM\x04\x15"), Nameless(1, 5));

        TiffEditor circle(MakePages({Page(4)}, MixedInks(8)));
        circle.SetNext(circle.DirectoryOffset());
        EXPECT_EQ(
            Inks(circle.Bytes()), "page 1: the pages run in a circle after page 1; a chain with an end is needed");
    }
}
