#include "ppf/Check.h"
#include "ppf/DocumentReader.h"
#include "tests/tools/ppf/Files.h"

#include <gmock/gmock.h>

#include <functional>

namespace PpfTest
{
    using namespace Ppf;

    namespace
    {
        using testing::ElementsAre;
        using testing::HasSubstr;
        using testing::IsEmpty;

        const std::string BlackHex = HexPixels(2, 1, "00ff>");

        std::string Replaced(std::string text, const std::string& from, const std::string& to)
        {
            const std::size_t at = text.find(from);
            EXPECT_NE(at, std::string::npos) << from;
            return text.replace(at, from.size(), to);
        }

        std::string ReplacedAll(std::string text, const std::string& from, const std::string& to)
        {
            for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
            {
                text.replace(at, from.size(), to);
            }
            return text;
        }

        TEST(DocumentReader, LineEndsOfEveryKindReadAlike)
        {
            for (const std::string lineEnd : {"\r", "\r\n", "\n\n", " \t\r\n"})
            {
                SCOPED_TRACE(testing::PrintToString(lineEnd));
                const SoundFile file(ReplacedAll(FrontOf("(Black)", BlackHex), "\n", lineEnd));
                EXPECT_EQ(Rows(file.document, file.Preview()), "00ff");
                EXPECT_THAT(Check(file.document, CheckDepth::Everything), IsEmpty());
            }
        }

        /// A file as another maker might write it: entries in any order and in outer sections, names after the
        /// pictures, procedures, dictionaries and sections of its own, a directory without padding.
        TEST(DocumentReader, FileOfAnotherMakerIsRead)
        {
            const SoundFile file(
                "%!PS-Adobe-3.0\r%%Creator: (someone\r%%CIP3-File Version 2.1\r"
                "/inch { 72 mul } bind def /CIP3BeginSheet { % not a section\r CIP3BeginSheet } def\r"
                "CIP3BeginPPFDirectory 233 1 (A) CIP3PPFDirEntry 16#FF 2 <42> CIP3PPFDirEntry CIP3EndPPFDirectory\r"
                "CIP3BeginSheet /CIP3AdmPSExtent[72 inch 1.0e2]def/CIP3AdmTool << /CIP3a (>>) /b [1 {def}] >> def\r"
                "/CIP3AdmJobName <4a6f62> def /CIP3PreviewImageBitsPerComp 8 def\r"
                "CIP3BeginCutData /CIP3AdmJobName (other) def CIP3BeginSheet 1 2 CIP3BlockTrf CIP3EndSheet "
                "(CIP3EndCutData) pop CIP3EndCutData\r"
                "CIP3BeginBack CIP3BeginPreviewImage /CIP3PreviewImageHeight 2#1 def\r"
                "/CIP3PreviewImageComponents 1 def /CIP3PreviewImageEncoding /ASCII85Decode def\r"
                "/CIP3PreviewImageWidth 9 def /CIP3PreviewImageResolution { 72. 36 } def\r"
                "CIP3BeginSeparation /CIP3PreviewImageWidth 4 def /CIP3PreviewImageCompression/None def\r"
                "CIP3PreviewImage<~!<N?+~>CIP3EndSeparation\r"
                "CIP3EndPreviewImage /CIP3AdmSeparationNames [ (K\\(1\\)) ] def CIP3EndBack CIP3EndSheet "
                "%%CIP3EndOfFile");
            const Document& document = file.document;
            EXPECT_EQ(document.version, "2.1");
            ASSERT_EQ(document.directory.size(), 2u);
            EXPECT_EQ(document.directory[1].offset, 255u);
            EXPECT_EQ(document.directory[1].sheetName, "B");
            ASSERT_EQ(document.sheets.size(), 1u);
            const Sheet& sheet = document.sheets[0];
            EXPECT_EQ(sheet.JobName(), "Job");
            EXPECT_EQ(sheet.Extent(), "72 inch 1.0e2");
            ASSERT_EQ(sheet.Parameters().size(), 1u);
            EXPECT_EQ(sheet.Parameters()[0].value, "<< /CIP3a (>>) /b [1 {def}] >>");
            const Preview& preview = file.Preview();
            EXPECT_THAT(preview.inks, ElementsAre("K(1)"));
            EXPECT_EQ(preview.width, 4u);
            EXPECT_EQ(preview.resolution->y, 36);
        }

        TEST(DocumentReader, NamesComeFromSurfaceOrSheetAndFollowTheComponents)
        {
            const std::string four = HexPixels(1, 1, "01020304>", "/CIP3PreviewImageComponents 4 def\n");
            const SoundFile ownNames(FrontOf("/C (M) <59> (Black \\101)(Gold)", four + BlackHex));
            EXPECT_THAT(ownNames.Preview(0).inks, ElementsAre("C", "M", "Y", "Black A"));
            EXPECT_THAT(ownNames.Preview(1).inks, ElementsAre("Gold"));

            const SoundFile ofSheet(Replaced(
                Replaced(FrontOf("X", BlackHex), "/CIP3AdmSeparationNames [X] def\n", ""), "CIP3BeginFront",
                "/CIP3AdmSeparationNames [ (Gold) ] def CIP3BeginFront"));
            EXPECT_THAT(ofSheet.Preview().inks, ElementsAre("Gold"));

            const SoundFile noNames(FrontOf("", BlackHex + four));
            EXPECT_THAT(noNames.Preview(0).inks, ElementsAre("Separation 1"));
            EXPECT_THAT(noNames.Preview(1).inks, ElementsAre("Cyan", "Magenta", "Yellow", "Black"));
        }

        TEST(DocumentReader, BinaryDataIsFoundBehindABlankOrALineEndWhateverItIs)
        {
            const std::string pixels("\n> ~>\x80 CIP3EndSeparation\r\0", 26);
            const std::string run = static_cast<char>(pixels.size() - 1) + pixels;
            const std::string lengthTen(
                "\x0a\x07"
                "12345678\xfe"
                "x\0y\x80",
                15);
            const std::vector<std::string> any = {" ", "\n", "\r", " \n", "\r\n", " \r\n"};
            const std::vector<std::string> lineEnds = {"\n", " \n", " \r\n", "\r\n"};
            const std::vector<std::string> blank = {" "}; // and the data at once is what this system writes
            const struct
            {
                const char* remark;
                std::vector<std::string> gaps;
                int width;
                std::string compression;
                std::string data;
                std::string after = "";
            } cases[] = {
                {"looks like line ends, end marks and words", any, 26, "None", pixels},
                {"the same in a run", any, 26, "RunLengthDecode", run + "\x80"},
                {"without an end mark", any, 26, "RunLengthDecode", run},
                {"a line feed as a length byte leads into step with the tokens, and to 12 bytes instead of 8", lineEnds,
                 8, "RunLengthDecode", std::string("\x02\x2a\x6c\x15\x04\xe0\x4d\xa1\x47\x46\x80", 11)},
                {"12 bytes also after the length byte 10", blank, 12, "RunLengthDecode", lengthTen},
                {"begins and ends with a line feed", blank, 12, "None", "\n23456789 1\n"},
                {"begins with a line end", blank, 12, "None", "\r\n3456789 1\r", "\r"},
                {"a gap of two blanks would leave one line end after the data", blank, 12, "None", " 23456789 1 ", " "},
            };
            for (const auto& [remark, gaps, width, compression, data, after] : cases)
            {
                for (const std::string& gap : gaps)
                {
                    SCOPED_TRACE(remark + (", after " + testing::PrintToString(gap)));
                    const SoundFile file(Replaced(
                        FrontOf("(K)", Separation(width, 1, compression, "Binary", data + after)), "CIP3PreviewImage\n",
                        "CIP3PreviewImage" + gap));
                    EXPECT_EQ(file.Preview().data, data);
                }
            }
        }

        TEST(DocumentReader, PreviewWithoutSeparationSectionIsRead)
        {
            std::string section = HexPixels(1, 1, "7f>");
            section = Replaced(Replaced(section, "CIP3BeginSeparation\n", ""), "CIP3EndSeparation\n", "");
            const SoundFile file(FrontOf("(K)", section));
            EXPECT_EQ(Rows(file.document, file.Preview()), "7f");
        }

        TEST(DocumentReader, DamageIsToldByWhatAndWhere)
        {
            const std::string good = FrontOf("(K)", BlackHex);
            const auto at = [&](const std::string& text) { return std::to_string(good.find(text)); };
            const std::tuple<std::string, std::string, std::string> cases[] = {
                {"%!PS", "PS!%", "0: not a print production file"},
                {"%%CIP3-File Version", "%%CIP3", "0: not a print production file: its header has no"},
                {"/CIP3PreviewImageWidth 2 def\n", "", "preview image has no /CIP3PreviewImageWidth"},
                {"Width 2 def", "Width 0 def", std::to_string(good.find("Width 2 def") + 6) + ": value of"},
                {"Width 2 def", "Width 2.5 def", "is not a whole number from 1 to 2147483647"},
                {"Comp 8 def", "Comp 2 def", "value of /CIP3PreviewImageBitsPerComp is not 1 or 8"},
                {"Components 1 def", "Components 3 def", "value of /CIP3PreviewImageComponents is not 1 or 4"},
                {"[2 0 0 -1 0 1]", "[2 1 0 -1 0 1]", "is not one of the eight orientations"},
                {"[2 0 0 -1 0 1]", "[2 0 0 -1 0]", "is not an array of 6 numbers"},
                {"[72 72]", "[72 0]", "is not two numbers above 0"},
                {"/ASCIIHexDecode", "/Rot13", "value of /CIP3PreviewImageEncoding is not one that this reader knows"},
                {"(Job) def", "(Job\\) def", at("(Job)") + ": string is not closed"},
                {"(Job) def", "(Job)", "is not closed by \"def\""},
                {"10 cm ] def", "10 cm } def", "\"}\" closes nothing here"},
                {"CIP3EndSeparation\n", "",
                 at("CIP3EndSeparation") + ": CIP3EndPreviewImage stands where "
                                           "CIP3EndSeparation is due"},
                {"CIP3BeginSeparation\n", "", "CIP3EndSeparation stands where CIP3EndPreviewImage is due"},
                {"CIP3BeginFront\n", "", "CIP3BeginPreviewImage stands within CIP3BeginSheet"},
                {"CIP3BeginSheet\n", "", "CIP3BeginFront stands outside the section that it belongs to"},
                {"CIP3EndSheet\n", "", "file ends within the section CIP3BeginSheet that begins at byte 46"},
                {"%%CIP3EndOfFile\n", "", "file has no closing comment"},
                {"CIP3PreviewImage\n00ff>\n", "", "separation has no preview image"},
                {"00ff>\n", "00ff>\n17 ", "preview image data is not followed by the end of its section"},
                {"00ff>\nCIP3EndSeparation", "00ff", "stands where CIP3EndSeparation is due"},
                {"/CIP3AdmSeparationNames [(K)]", "/CIP3AdmSeparationNames (K)", "is not an array of names"},
                {"[(K)]", '[' + Repeated("(K)", 1001) + ']',
                 "value of /CIP3AdmSeparationNames has more than 1000 names"},
                {"[(K)]", "[(" + std::string(65536, 'K') + ")]",
                 "value of /CIP3AdmSeparationNames has 65540 bytes and is left out; the most that is read is 65537"},
                {"CIP3BeginSheet\n", "CIP3BeginPPFDirectory 1 (x) CIP3PPFDirEntry\n",
                 "directory entry is not an offset, a length and a name"},
            };
            for (const auto& [from, to, expected] : cases)
            {
                const std::string bytes = Replaced(good, from, to);
                EXPECT_THAT(Text(ReadDocument(bytes).damage), HasSubstr(expected)) << from << " -> " << to;
            }
        }

        /// Names that are operands of some word, wherever PostScript may have them.
        TEST(DocumentReader, NameThatIsNoKeyDoesNotEndTheReading)
        {
            const std::string good = FrontOf("(K)", BlackHex);
            for (const std::string text :
                 {"CIP3BeginRegisterMarks 5 mm 9 mm 0 /cross&circle CIP3PlaceRegisterMark\n"
                  "/CIP3AdmJobName { CIP3EndRegisterMarks } pop CIP3EndRegisterMarks\n",
                  "/Helvetica findfont\n", "/Q 5 store [ /A (x) ] pop << /B 1 >> pop\n",
                  "systemdict /setpacking known { CIP3BeginSheet } if\n", "/CIP3AdmX 1 /CIP3Y 2 def def\n"})
            {
                SCOPED_TRACE(text);
                const SoundFile file(Replaced(good, "CIP3BeginFront", text + "/CIP3AdmZ 3 def CIP3BeginFront"));
                EXPECT_EQ(file.document.sheets.at(0).Find("CIP3AdmZ"), "3");
                EXPECT_EQ(file.document.sheets.at(0).surfaces.at(0).previews.size(), 1u);
            }
            EXPECT_THAT(Text(ReadDocument(Front("{ /a 1 def")).damage), HasSubstr("procedure is not closed"));
        }

        TEST(DocumentReader, NamesInAnyNumberAreLookedBehindOnce)
        {
            // A search from each of them to the end of all would take minutes.
            SoundFile(FrontOf("(K)", Repeated("/a b ", 200000) + BlackHex));
        }

        TEST(DocumentReader, FileCutAnywhereIsDamagedAndNamesAByteWithin)
        {
            const std::string whole = TwoSheets();
            for (std::size_t size = 0; size + 1 < whole.size(); ++size)
            {
                const std::string bytes = whole.substr(0, size);
                const Document document = ReadDocument(bytes);
                ASSERT_TRUE(document.damage) << "cut at " << size;
                EXPECT_LE(document.damage->offset, size);
                EXPECT_FALSE(Check(document, CheckDepth::Everything).empty()) << "cut at " << size;
            }
        }

        TEST(DocumentReader, RecordsTakeNoMoreMemoryThanTheyMay)
        {
            const std::string bytes = Header() + Repeated("CIP3BeginSheet CIP3EndSheet\n", 400000) + Closing();
            const Document document = ReadDocument(bytes);
            EXPECT_THAT(Text(document.damage), HasSubstr("more sections and entries than any job"));
            EXPECT_LT(document.sheets.capacity() * sizeof(Sheet), UsualLimits.memory);
            EXPECT_EQ(Text(ReadDocument(bytes, NoLimits).damage), "");
        }

        TEST(DocumentReader, LargeJobIsRead)
        {
            const std::string file = FrontOf("(Cyan) (Magenta) (Yellow) (Black)", Repeated(HexPixels(1, 1, "00>"), 4));
            const std::size_t begin = file.find("CIP3BeginSheet");
            const std::string sheet = file.substr(begin, file.find("%%CIP3End") - begin);
            const SoundFile job(Header() + Repeated(sheet, 10000) + Closing());
            EXPECT_EQ(job.document.sheets.size(), 10000u);
            EXPECT_EQ(job.document.sheets.back().surfaces.at(0).previews.back().inks.at(0), "Black");
        }

        TEST(DocumentReader, NamesOfASheetAreNotKeptForEverySideWithoutBound)
        {
            const std::string bytes = Header() + "CIP3BeginSheet /CIP3AdmSeparationNames [" +
                                      Repeated("(Ink 1000)", 900) + "] def\n" +
                                      Repeated("CIP3BeginBack CIP3EndBack\n", 2000) + "CIP3EndSheet " + Closing();
            const Document document = ReadDocument(bytes);
            EXPECT_THAT(Text(document.damage), HasSubstr("more separation names than any job"));
            EXPECT_EQ(document.sheets[0].surfaces.size(), 2000u);
            EXPECT_THAT(document.sheets[0].surfaces[0].separationNames, testing::SizeIs(900));
            EXPECT_THAT(document.sheets[0].surfaces[1999].separationNames, IsEmpty());
        }

        TEST(DocumentReader, DeepNestingIsRefusedNotFollowed)
        {
            const std::string values = Front("/x " + std::string(100000, '{') + " def\n");
            EXPECT_THAT(Text(ReadDocument(values).damage), HasSubstr("nested too deeply"));
            const std::string sections = Front(Repeated("CIP3BeginThing ", 1000));
            EXPECT_THAT(Text(ReadDocument(sections).damage), HasSubstr("nested too deeply"));
        }
    }
}
