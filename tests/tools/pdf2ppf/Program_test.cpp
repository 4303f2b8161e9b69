// The program with the Ghostscript that is installed.
#include "job/Conversion.h"
#include "tests/tools/pdf2ppf/Documents.h"
#include "tests/tools/pdf2ppf/Runs.h"

#include <gmock/gmock.h>

#include <sstream>

namespace Pdf2PpfTest
{
    using ::testing::ElementsAre;
    using ::testing::HasSubstr;
    using ::testing::MatchesRegex;
    using ::testing::StartsWith;

    class ProgramTest : public RunTest
    {
    protected:
        /// Four pages: two process inks; a spot colour on a page of another size; nothing; two spot colours.
        void WriteFourPages() const
        {
            folder.Write(
                "four.pdf", Pdf(
                                {{"0 0 144 72", Fill("1 0 0 0", "10 10 20 20") + Fill("0 0 0 1", "40 10 20 20")},
                                 {"0 0 288 72", FillSpot(0, "1", "0 0 10 10"), {"Signal Orange"}},
                                 {"0 0 100 100", ""},
                                 {"0 0 100 100",
                                  FillSpot(0, ".5", "0 0 10 10") + FillSpot(1, "1", "20 0 10 10"),
                                  {"Gold", "Silver"}}}));
        }
    };

    TEST_F(ProgramTest, PagesBecomeSheetsWithTheInksThatAreOnThem)
    {
        WriteFourPages();
        EXPECT_EQ(Run("pdf2ppf four.pdf -o made/out.ppf </dev/null"), 0) << Error();
        EXPECT_EQ(Out() + Error(), "");
        EXPECT_EQ(
            Inks("made/out.ppf"), "four; Page 1 front: Cyan Black; Page 2 front: Signal Orange; Page 3 front: Black; "
                                  "Page 4 front: Gold Silver");
    }

    TEST_F(ProgramTest, BlankInksAreKeptOnDemand)
    {
        WriteFourPages();
        EXPECT_EQ(Run("pdf2ppf --keep-blank --pages 2-3 four.pdf -o out.ppf"), 0) << Error();
        EXPECT_EQ(
            Inks("out.ppf"), "four; Page 2 front: Cyan Magenta Yellow Black Signal Orange; "
                             "Page 3 front: Cyan Magenta Yellow Black");
    }

    TEST_F(ProgramTest, TraceOfInkIsInk)
    {
        // Less than a pixel of the preview, and too little to be seen there.
        folder.Write("a.pdf", Pdf({{"0 0 144 72", Fill("0 0 0 1", "0 0 9 9") + Fill("0 .02 0 0", "20 20 .2 .2")}}));
        EXPECT_EQ(Run("pdf2ppf a.pdf -o out.ppf"), 0) << Error();
        EXPECT_EQ(Inks("out.ppf"), "a; Page 1 front: Magenta Black");
    }

    TEST_F(ProgramTest, PagesAreChosenInPdfAndPostScript)
    {
        WriteFourPages();
        EXPECT_EQ(Run("pdf2ppf --pages 4,1 four.pdf -o out.ppf"), 0) << Error();
        EXPECT_EQ(Inks("out.ppf"), "four; Page 1 front: Cyan Black; Page 4 front: Gold Silver");

        folder.Write(
            "a.ps", "%!PS\n<< /PageSize [144 72] >> setpagedevice 1 0 0 0 setcmykcolor 0 0 9 9 rectfill showpage\n"
                    "0 1 0 0 setcmykcolor 0 0 9 9 rectfill showpage 0 0 1 0 setcmykcolor 0 0 9 9 rectfill showpage\n");
        EXPECT_EQ(Run("pdf2ppf --pages 3,2 --sheet-name '5% %d of %d' --job J a.ps -o out.ppf"), 0) << Error();
        EXPECT_EQ(Inks("out.ppf"), "J; 5% 2 of 2 front: Magenta; 5% 3 of 3 front: Yellow");
    }

    TEST_F(ProgramTest, PageThatIsNotThereIsAFailure)
    {
        WriteFourPages();
        folder.Write("a.ps", "%!PS\nshowpage showpage\n");
        EXPECT_EQ(Run("pdf2ppf --pages 1,5 four.pdf -o out.ppf"), 1);
        EXPECT_THAT(Error(), MatchesRegex("pdf2ppf: error: four.pdf: there is no page 5, [^\n]*\n"));
        EXPECT_EQ(Run("pdf2ppf --pages 2-3 a.ps -o out.ppf"), 1);
        EXPECT_EQ(Error(), "pdf2ppf: error: a.ps: there is no page 3, which --pages asks for\n");
        EXPECT_THAT(folder.Names(), ElementsAre("a.ps", "four.pdf"));
    }

    TEST_F(ProgramTest, DuplexPagesAreSidesOfASheet)
    {
        const PdfPage front{"0 0 144 72", Fill("1 0 0 0", "0 0 9 9")};
        const PdfPage back{"0 0 144 72", Fill("0 1 0 0", "0 0 9 9")};
        folder.Write("a.pdf", Pdf({front, back, front}));
        EXPECT_EQ(Run("pdf2ppf --duplex a.pdf -o out.ppf"), 0) << Error();
        EXPECT_EQ(Inks("out.ppf"), "a; Sheet 1 front: Cyan; back: Magenta; Sheet 2 front: Cyan");
    }

    TEST_F(ProgramTest, DuplexPagesOfDifferentSizesAreAFailure)
    {
        WriteFourPages();
        EXPECT_EQ(Run("pdf2ppf --duplex four.pdf -o out.ppf"), 1);
        EXPECT_EQ(
            Error(),
            "pdf2ppf: error: four.pdf: pages 1 and 2, front and back of a sheet, differ in size: 102 x 51 and 203 "
            "x 51 pixels at 50.8 per inch\n");
        EXPECT_THAT(folder.Names(), ElementsAre("four.pdf"));
    }

    TEST_F(ProgramTest, SpotColoursKeepAllCharactersOfTheirNames)
    {
        // What looks like an escape, like a process ink, and like another's name with a number.
        const std::vector<std::string> names = {"a/b:c\\d",   "100%25 %d", "%zz", "gr\xC3\xBCn", "YELLOW",
                                                "two\nlines", "\"q\" (b)", "A",   "A7"};
        std::string content;
        for (std::size_t i = 0; i < names.size(); ++i)
        {
            content += FillSpot(static_cast<int>(i), "1", std::to_string(16 * i) + " 0 9 9");
        }
        folder.Write("a.pdf", Pdf({{"0 0 144 72", content, names}}));
        EXPECT_EQ(Run("pdf2ppf a.pdf -o out.ppf"), 0) << Error();
        std::string all = "a; Page 1 front:";
        for (const std::string& name : names)
        {
            all += ' ' + name;
        }
        EXPECT_EQ(Inks("out.ppf"), all);
        // Each has the pixels of its own place.
        for (std::size_t i = 0; i < names.size(); ++i)
        {
            const Preview preview = PreviewOf("out.ppf", names[i]);
            const std::size_t row = preview.pixels.size() - 3 * preview.width; // within the rectangles
            EXPECT_EQ(preview.pixels[row + (16 * i + 4) * 508 / 720], 255) << names[i];
            EXPECT_EQ(preview.pixels[row + (16 * i + 13) * 508 / 720], 0) << names[i];
        }
    }

    TEST_F(ProgramTest, ManySpotColoursOfPostScriptAreAllKept)
    {
        // More than Ghostscript makes room for where it does not know their number beforehand.
        std::string file = "%!PS\n<< /PageSize [144 72] >> setpagedevice\n";
        for (int i = 0; i < 14; ++i)
        {
            file += "[/Separation (Spot " + std::to_string(i) +
                    ") /DeviceCMYK {dup 0 0 4 2 roll}] setcolorspace 1 setcolor " + std::to_string(10 * i) +
                    " 0 9 9 rectfill\n";
        }
        folder.Write("a.ps", file + "showpage\n");
        EXPECT_EQ(Run("pdf2ppf a.ps -o out.ppf"), 0) << Error();
        EXPECT_THAT(Inks("out.ppf"), HasSubstr("front: Spot 0 Spot 1 "));
        EXPECT_THAT(Inks("out.ppf"), HasSubstr(" Spot 13"));
        EXPECT_EQ(PreviewOf("out.ppf", "Spot 13").width, 102U);
    }

    TEST_F(ProgramTest, PreviewsAreGhostscriptsSeparationsReduced)
    {
        const std::string slanted = "0.2 0 .7 0 k 3 5 m 90 40 l 60 52 l f\n";
        folder.Write("a.pdf", Pdf({{"0 0 100 53", slanted + FillSpot(0, ".37", "7.3 20.1 33.3 11.7"), {"Gold"}}}));
        const struct
        {
            const char* options;
            const char* rendered; // pixels per inch
            double written;       // pixels per inch
        } cases[] = {
            {"", "406.4", 50.8},
            {"--oversampling 3", "152.4", 50.8},
            {"--resolution 33.25 --oversampling 4", "133", 33.25},
            {"--oversampling 1", "50.8", 50.8},
        };
        for (const auto& [options, rendered, written] : cases)
        {
            SCOPED_TRACE(options);
            ASSERT_EQ(
                Run(std::string("gs -q -dSAFER -dBATCH -dNOPAUSE -sDEVICE=tiffsep -r") + rendered +
                    " -sOutputFile=g.tif a.pdf && pdf2ppf " + options + " a.pdf -o out.ppf"),
                0)
                << Error();
            Jobs::Job job;
            job.inputResolution = std::stod(rendered);
            job.reduction = {written, 0};
            job.sheets.resize(1);
            job.sheets[0].jobName = "J";
            Jobs::ConversionSettings settings;
            settings.output = folder / "wanted.ppf";
            const std::vector<std::string> inks = {"Cyan", "Yellow", "Gold"};
            for (const std::string& ink : inks)
            {
                job.sheets[0].front.push_back({ink, folder / ("g(" + ink + ").tif")});
            }
            std::ostringstream messages;
            Jobs::Convert(job, settings, messages);
            for (const std::string& ink : inks)
            {
                const Preview preview = PreviewOf("out.ppf", ink);
                const Preview wanted = PreviewOf("wanted.ppf", ink);
                EXPECT_EQ(preview.width, wanted.width);
                EXPECT_TRUE(preview.pixels == wanted.pixels) << ink;
                EXPECT_EQ(preview.across, written);
                EXPECT_EQ(preview.down, written);
            }
        }
    }

    TEST_F(ProgramTest, PagesAreTurnedBySide)
    {
        // A mark in the lower left corner.
        const PdfPage page{"0 0 144 72", Fill("0 0 0 1", "0 0 20 10")};
        folder.Write("a.pdf", Pdf({page, page}));
        ASSERT_EQ(Run("pdf2ppf --duplex a.pdf -o plain.ppf"), 0) << Error();
        ASSERT_EQ(
            Run("pdf2ppf --front-orientation rotate180 --back-orientation flip0 --duplex a.pdf -o out.ppf && "
                "pdf2ppf --pages 1 --front-orientation rotate90 a.pdf -o quarter.ppf"),
            0)
            << Error();
        const auto cornerOf = [](const Preview& preview)
        {
            const std::size_t last = preview.pixels.size() - 1;
            const std::size_t places[] = {0, preview.width - 1, last - preview.width + 1, last};
            std::string corners;
            for (const std::size_t place : places)
            {
                corners += preview.pixels[place] > 0 ? '1' : '0';
            }
            return corners + ' ' + std::to_string(preview.width) + 'x' + std::to_string(preview.height);
        };
        EXPECT_EQ(cornerOf(PreviewOf("plain.ppf", "Black")), "0010 102x51");
        EXPECT_EQ(cornerOf(PreviewOf("out.ppf", "Black", 0)), "0100 102x51");
        EXPECT_EQ(cornerOf(PreviewOf("out.ppf", "Black", 1)), "1000 102x51");
        EXPECT_EQ(cornerOf(PreviewOf("quarter.ppf", "Black")), "0001 51x102");
    }

    TEST_F(ProgramTest, PageIsItsMediaBoxOrBoundingBox)
    {
        folder.Write("a.pdf", Pdf({{"10 20 154 92", Fill("1 0 0 0", "10 20 9 9")}}));
        EXPECT_EQ(Run("pdf2ppf a.pdf -o out.ppf"), 0) << Error();
        const Preview page = PreviewOf("out.ppf", "Cyan");
        EXPECT_EQ(page.width, 102U);
        EXPECT_EQ(page.height, 51U);
        EXPECT_EQ(page.pixels[page.width * 48], 255);

        // Without a showpage, as EPS files often are.
        folder.Write(
            "a.eps", "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 100 100 244 172\n%%EndComments\n"
                     "1 0 0 0 setcmykcolor 100 100 9 9 rectfill\n");
        EXPECT_EQ(Run("pdf2ppf a.eps -o eps.ppf"), 0) << Error();
        EXPECT_EQ(PreviewOf("eps.ppf", "Cyan").pixels, page.pixels);
    }

    TEST_F(ProgramTest, WhatGhostscriptRefusesIsAFailureWithItsReason)
    {
        const std::string good = Pdf({{"0 0 144 72", Fill("1 0 0 0", "0 0 9 9")}});
        std::string misplaced = good;
        misplaced.replace(misplaced.rfind("startxref\n") + 10, 1, "9");
        const std::string locked = "/Encrypt<</Filter/Standard/V 1/R 2/O<" + std::string(64, '1') + ">/U<" +
                                   std::string(64, '2') + ">/P -4>>/ID[<00><00>]";
        const struct
        {
            const char* name;
            std::string bytes;
            const char* reason;
        } files[] = {
            {"empty.pdf", "", "the file is empty"},
            {"text.pdf", "hello world\n", "/undefined in hello"},
            {"cut.pdf", good.substr(0, 300), "PDF file was repaired"},
            {"repairable.pdf", misplaced, "leave out what is wrong in it: startxref offset invalid; "},
            {"locked.pdf", Pdf({{"0 0 144 72", ""}}, locked), "This file requires a password for access."},
            {"nopage.pdf", Pdf({}), "PDF document has no pages."},
            {"nopage.ps", "%!PS\n", "found no page in it"},
            {"nosize.pdf", Pdf({{"", ""}}), "no /MediaBox"},
            {"zero.pdf", Pdf({{"0 0 0 0", ""}}), "[/PageSize [0 0]]"},
            {"operator.pdf", Pdf({{"0 0 144 72", "bogus"}}), "error"},
            {"curious.ps", "%!PS\n(/etc/passwd) (r) file pop showpage\n", "/invalidfileaccess in --file--"},
            {"writer.ps", "%!PS\n(/tmp/x.tif) (w) file pop showpage\n", "/invalidfileaccess in --file--"},
            {"long.pdf", Pdf({{"0 0 144 72", FillSpot(0, "1", "0 0 9 9"), {std::string(300, 'x')}}}),
             "the name of a spot colour is too long: it takes a file name of 309 bytes, and the limit is 255"},
            {"long.ps",
             "%!PS\n[/Separation (" + std::string(300, 'x') +
                 ") cvn /DeviceCMYK {dup dup dup}] setcolorspace 1 setcolor 0 0 9 9 rectfill showpage\n",
             "the name of a spot colour is too long"},
        };
        for (const auto& file : files)
        {
            const std::string name = file.name;
            folder.Write(name, file.bytes);
            // What comes from outside must not loosen the restrictions.
            EXPECT_EQ(Run("GS_OPTIONS=-dNOSAFER pdf2ppf " + name + " -o out.ppf"), 1) << name;
            EXPECT_THAT(Error(), MatchesRegex("pdf2ppf: error: " + name + ": [^\n]*\n"));
            EXPECT_THAT(Error(), HasSubstr(file.reason)) << name;
        }
        EXPECT_EQ(Run("pdf2ppf none.pdf -o out.ppf"), 1);
        EXPECT_EQ(Error(), "pdf2ppf: error: none.pdf: No such file or directory\n");
        EXPECT_EQ(Run("mkdir d && pdf2ppf d -o out.ppf"), 1);
        EXPECT_EQ(Error(), "pdf2ppf: error: d: Is a directory\n");
        EXPECT_EQ(Run("mkfifo p && pdf2ppf p -o out.ppf"), 1);
        EXPECT_EQ(Error(), "pdf2ppf: error: p: a regular file is needed\n");
        EXPECT_NE(Run("test -e out.ppf"), 0);
    }

    TEST_F(ProgramTest, AnyFileNameIsAFileName)
    {
        const std::string file = Pdf({{"0 0 144 72", Fill("1 0 0 0", "0 0 9 9")}});
        for (const std::string name : {"%pipe%touch made.pdf", "@list.pdf", "-dNOSAFER", "a b%d.pdf", "gr\xFCn.pdf"})
        {
            folder.Write(name, file);
            EXPECT_EQ(Run("mkdir -p '%d x'; TMPDIR=\"$PWD/%d x\" pdf2ppf -o out.ppf -- '" + name + "'"), 0)
                << name << ": " << Error();
            EXPECT_THAT(Inks("out.ppf"), HasSubstr("; Page 1 front: Cyan")) << name;
            EXPECT_EQ(Run("rmdir '%d x' && rm out.ppf && test ! -e made.pdf"), 0) << name;
        }
    }

    TEST_F(ProgramTest, OutputIsSafe)
    {
        WriteFourPages();
        EXPECT_EQ(Run("cp four.pdf same.pdf && pdf2ppf same.pdf -o same.pdf"), 2);
        EXPECT_EQ(Error(), "pdf2ppf: error: same.pdf: the output would replace the input\n");
        EXPECT_EQ(folder.Read("same.pdf"), folder.Read("four.pdf"));
        EXPECT_EQ(Run("echo before; pdf2ppf --pages 1 four.pdf -o -"), 0) << Error();
        EXPECT_THAT(Out(), StartsWith("before\n%!PS-Adobe-3.0\n"));
        // Found before the pages are rendered.
        EXPECT_EQ(Run("pdf2ppf four.pdf -o four.pdf/out.ppf"), 1);
        EXPECT_THAT(Error(), HasSubstr("the output cannot be written: four.pdf/out.ppf: "));
    }

    TEST_F(ProgramTest, FullDiskIsAFailure)
    {
        // A limit of some blocks on every file does what a full disk does: writing stops short.
        folder.Write("a.pdf", Pdf({{"0 0 1440 720", Fill("1 0 0 0", "0 0 900 700")}}));
        EXPECT_EQ(Run("ulimit -f 20; pdf2ppf a.pdf -o out.ppf"), 1);
        EXPECT_THAT(Error(), MatchesRegex("pdf2ppf: error: a.pdf: [^\n]*\n"));
        EXPECT_THAT(folder.Names(), ElementsAre("a.pdf"));
    }

    TEST_F(ProgramTest, VerboseSaysALinePerSheetAndSide)
    {
        WriteFourPages();
        EXPECT_EQ(Run("pdf2ppf --verbose --pages 2 four.pdf -o out.ppf"), 0);
        EXPECT_EQ(
            Error(),
            "sheet 1 \"Page 2\", front: 1626 x 406 pixels at 406.4 per inch to 203 x 51 at 50.8: Signal Orange\n");
    }

    TEST_F(ProgramTest, OrderReachesTheFile)
    {
        WriteFourPages();
        EXPECT_EQ(
            Run("pdf2ppf --pages 1 --param 'CIP3AdmMake=(Press 4)' --compression none --encoding binary four.pdf -o "
                "out.ppf"),
            0)
            << Error();
        const std::string file = folder.Read("out.ppf");
        EXPECT_THAT(file, HasSubstr("/CIP3AdmMake (Press 4) def\n"));
        EXPECT_THAT(file, HasSubstr("/CIP3PreviewImageCompression /None def\n"));
        EXPECT_THAT(file, HasSubstr("/CIP3PreviewImageEncoding /Binary def\n"));
    }
}
