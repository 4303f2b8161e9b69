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

    TEST(MessagesTest, ReasonIsTheLineThatSaysMost)
    {
        EXPECT_EQ(
            ReasonOf(
                "Error: /undefined in hello\nOperand stack:\n   1   (   **** Error: none\\n)\nCurrent file position is "
                "6\n",
                "GPL Ghostscript 10.00.0: Unrecoverable error, exit code 1\n"),
            "/undefined in hello");
        EXPECT_EQ(
            ReasonOf("Error: /ioerror in --showpage--\nLast OS error: No space left on device\n", ""),
            "/ioerror in --showpage--; No space left on device");
        EXPECT_EQ(ReasonOf("GPL Ghostscript 10.0.0 (2022-09-21)\nPage 1\n", ""), "");
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
