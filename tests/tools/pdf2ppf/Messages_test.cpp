// What Ghostscript prints, taken apart. The texts are its own.
#include "pdf2ppf/Messages.h"

#include <gmock/gmock.h>

namespace Pdf2PpfTest
{
    using Pdf2Ppf::Messages;
    using Pdf2Ppf::Source;
    using ::testing::ElementsAre;

    constexpr std::size_t All = 1000;

    std::string Colour(const std::string& name)
    {
        return "%%SeparationColor: \"" + name + "\" 100% ink = 0 16380 32760 0 CMYK\n";
    }

    std::string ReasonOf(const std::string& output, const std::string& error)
    {
        Messages messages;
        messages.Take(Source::Output, output);
        messages.Take(Source::Error, error);
        messages.End();
        return messages.Reason();
    }

    TEST(MessagesTest, NamesOfSpotColoursKeepAllTheirBytes)
    {
        const std::vector<std::string> names = {
            "Signal Orange",  "a/b%d", "gr\xFCn\n%%x\n",      "a\" 100% ink = 1 2 3 CMYK\n",
            "a\" 100% ink =", "",      std::string(5000, 'x')};
        std::string printed = "Page 1\n";
        for (const std::string& name : names)
        {
            printed += Colour(name) + "Page 2\n";
        }
        // Whole, and byte by byte as a pipe may bring it.
        for (const std::size_t step : {printed.size(), std::size_t(1)})
        {
            Messages messages;
            for (std::size_t at = 0; at < printed.size(); at += step)
            {
                messages.Take(Source::Error, std::string_view(printed).substr(at, step));
            }
            EXPECT_EQ(messages.TakeSpotNames(All), names) << "in steps of " << step;
        }
    }

    TEST(MessagesTest, NamesAreTakenPageByPage)
    {
        Messages messages;
        messages.Take(Source::Output, Colour("A") + Colour("B") + Colour("C"));
        EXPECT_THAT(messages.TakeSpotNames(2), ElementsAre("A", "B"));
        EXPECT_THAT(messages.TakeSpotNames(2), ElementsAre("C"));
    }

    TEST(MessagesTest, PagesOfPdfAreKnown)
    {
        Messages messages;
        EXPECT_EQ(messages.PagesInFile(), 0U);
        messages.Take(Source::Output, "Processing pages 1 through 12.\nPage 1\n");
        EXPECT_EQ(messages.PagesInFile(), 12U);
    }

    TEST(MessagesTest, RepairedFileIsFaulty)
    {
        Messages messages;
        messages.Take(
            Source::Error, "\nThe following errors were encountered at least once while processing this file:\n"
                           "\tstartxref offset invalid\n\tPDF file was repaired\n\n"
                           "   **** This file had errors that were repaired or ignored.\n"
                           "   **** The file was produced by: \n   **** >>>> A Program <<<<\n"
                           "   **** Please notify the author of the software that produced this\n"
                           "   **** file that it does not conform to Adobe's published PDF\n"
                           "   **** specification.\n\n");
        EXPECT_TRUE(messages.SaysFileIsFaulty());
        EXPECT_EQ(messages.Reason(), "startxref offset invalid; PDF file was repaired");
    }

    TEST(MessagesTest, ReasonIsTheLineThatSaysMost)
    {
        EXPECT_EQ(
            ReasonOf(
                "Error: /undefined in hello\nOperand stack:\n   1   (   **** Error: none\\n)\nCurrent file position is "
                "6\n",
                "GPL Ghostscript 10.00.0: Unrecoverable error, exit code 1\n"),
            "/undefined in hello");
        EXPECT_EQ(
            ReasonOf(
                "   **** Error: Couldn't initialise file.\n               Output may be incorrect.\n",
                "GPL Ghostscript 10.00.0: \n   **** This file requires a password for access.\n"),
            "This file requires a password for access.");
        EXPECT_EQ(ReasonOf("", "\n   **** Warning: PDF document has no pages.\n"), "PDF document has no pages.");
        EXPECT_EQ(
            ReasonOf("Error: /ioerror in --showpage--\nLast OS error: No space left on device\n", ""),
            "/ioerror in --showpage--; No space left on device");
        EXPECT_EQ(ReasonOf("", "gs: symbol lookup error: no such symbol"), "gs: symbol lookup error: no such symbol");
        EXPECT_EQ(ReasonOf("GPL Ghostscript 10.0.0 (2022-09-21)\nPage 1\n", ""), "");
    }

    TEST(MessagesTest, LongNameIsSaidToBeTooLong)
    {
        EXPECT_EQ(
            ReasonOf(
                "", "GPL Ghostscript 10.00.0: **** Could not open the file 1(" + std::string(300, 'x') + ").tif.\n"),
            "the name of a spot colour is too long: it takes a file name of 308 bytes, and the limit is 255");
    }

    TEST(MessagesTest, LostSpotColoursAreNoticed)
    {
        Messages messages;
        EXPECT_FALSE(messages.SaysSpotColoursAreLost());
        messages.Take(Source::Error, "**** Max spot colorants reached.\n");
        EXPECT_TRUE(messages.SaysSpotColoursAreLost());
    }

    TEST(MessagesTest, EndlessOutputIsBounded)
    {
        Messages messages;
        const std::string filling(1U << 20U, 'x');
        messages.Take(Source::Output, "%%SeparationColor: \"");
        for (int i = 0; i < 20; ++i)
        {
            messages.Take(Source::Output, filling);
            messages.Take(Source::Error, "   **** " + filling + '\n');
        }
        messages.Take(Source::Output, "\n" + Colour("A"));
        messages.End();
        EXPECT_LT(messages.Reason().size(), 2000U);
        EXPECT_THAT(messages.TakeSpotNames(All), ElementsAre("A"));
    }
}
