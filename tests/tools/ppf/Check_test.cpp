#include "ppf/Check.h"
#include "tests/tools/ppf/Files.h"

#include <gmock/gmock.h>

namespace PpfTest
{
    using namespace Ppf;

    namespace
    {
        using testing::ElementsAre;
        using testing::HasSubstr;
        using testing::IsEmpty;

        std::vector<std::string> Findings(const std::string& bytes, CheckDepth depth = CheckDepth::Everything)
        {
            std::vector<std::string> texts;
            for (const Finding& finding : Check(bytes, depth))
            {
                texts.push_back(Text(finding));
            }
            return texts;
        }

        std::string Damaged(std::size_t at, const std::string& text)
        {
            return TwoSheets().replace(at, text.size(), text);
        }

        TEST(Check, WellFormedFileHasNoFindings)
        {
            EXPECT_THAT(Findings(TwoSheets()), IsEmpty());
            EXPECT_THAT(Findings(TwoSheets(), CheckDepth::Structure), IsEmpty());
            EXPECT_THAT(Findings(Header() + Closing()), IsEmpty());
        }

        TEST(Check, DirectoryIsHeldAgainstTheSections)
        {
            EXPECT_THAT(
                Findings(Damaged(68, "0000000602")),
                ElementsAre("68: directory entry of sheet \"S1\" gives offset 602, but the section begins at 601"));
            EXPECT_THAT(
                Findings(Damaged(324 + 11, "0000000709")),
                ElementsAre("324: directory entry of sheet \"S2\" gives 709 bytes, but the section has 710"));
            EXPECT_THAT(
                Findings(Damaged(324 + 23, "T2")),
                ElementsAre("324: directory entry of sheet \"T2\" stands for a sheet that calls itself \"S2\""));
            // The second entry struck out.
            EXPECT_THAT(Findings(Damaged(324, "%")), ElementsAre("68: directory has 1 entries for 2 sheets"));
        }

        TEST(Check, LengthsMayEndAtTheWordIfAllEntriesDo)
        {
            std::string bytes = Damaged(68 + 11, "0000000710");
            bytes.replace(324 + 11, 10, "0000000708");
            EXPECT_THAT(Findings(bytes), IsEmpty());
        }

        TEST(Check, PreviewIsHeldAgainstItsSize)
        {
            EXPECT_THAT(
                Findings(Damaged(1232, "fe")),
                ElementsAre(HasSubstr("1227: preview's data goes on for 1 bytes after the 8 that 4 x 2")));
            EXPECT_THAT(Findings(Damaged(1232, "00")), ElementsAre("1245: preview's data ends in row 2 of 2"));
            EXPECT_THAT(
                Findings(Damaged(1230, "g")), ElementsAre("1230: ASCIIHex data holds a character that is not a digit"));
            // Decoding is what the cheap check leaves out.
            EXPECT_THAT(Findings(Damaged(1232, "fe"), CheckDepth::Structure), IsEmpty());
        }

        TEST(Check, DataEndsWithItsMarkAndItsLastPixel)
        {
            // A writer's check is about sizes alone, and the cheap one decodes nothing.
            constexpr CheckDepth Structure = CheckDepth::Structure;
            constexpr CheckDepth Sizes = CheckDepth::Sizes;
            constexpr CheckDepth Everything = CheckDepth::Everything;
            const struct
            {
                CheckDepth depth;
                const char* compression;
                const char* encoding;
                int width;
                const char* data;
                const char* finding; // empty: none
            } cases[] = {
                {Structure, "None", "ASCIIHexDecode", 2, "00ff", "ASCIIHex data has no end mark \">\""},
                {Structure, "None", "ASCII85Decode", 6, "!<N?+", "ASCII85 data has no end mark"},
                {Structure, "None", "Binary", 6, "abc", "preview has 3 bytes of data, but 6 x 1 pixels need 6"},
                {Structure, "None", "Binary", 6, "abcdefgh", "preview has 8 bytes of data, but 6 x 1 pixels need 6"},
                {Structure, "RunLengthDecode", "Binary", 6, "\x05zz",
                 "RunLengthDecode data does not lead to the end of its section"},
                {Everything, "RunLengthDecode", "Binary", 4, "\xFDg", "run-length data has no end mark 128"},
                {Everything, "RunLengthDecode", "Binary", 4, "\xFDg\x80", ""},
                {Everything, "RunLengthDecode", "Binary", 4, "\xFD\x80", "has no end mark 128"}, // that of a run
                {Everything, "RunLengthDecode", "ASCIIHexDecode", 4, "fd67>", "has no end mark 128"},
                {Everything, "RunLengthDecode", "ASCIIHexDecode", 4, "fd67 80 00 00>",
                 "2 bytes stand after the end mark of run-length data"},
                {Sizes, "RunLengthDecode", "ASCIIHexDecode", 4, "fd67>", ""},
                {Sizes, "RunLengthDecode", "ASCIIHexDecode", 4, "fe67 80>", "row 1 of 1"},
            };
            for (const auto& [depth, compression, encoding, width, data, finding] : cases)
            {
                const auto found = Findings(FrontOf("(K)", Separation(width, 1, compression, encoding, data)), depth);
                const std::vector<testing::Matcher<std::string>> wanted(*finding == '\0' ? 0 : 1, HasSubstr(finding));
                EXPECT_THAT(found, testing::ElementsAreArray(wanted)) << compression << ' ' << encoding << ' ' << data;
            }
        }

        TEST(Check, ValuesAreWhatTheFormatAsksFor)
        {
            const auto with = [](const std::string& text, const std::string& other)
            {
                std::string bytes = FrontOf("(K)", HexPixels(2, 1, "00ff>"));
                return bytes.replace(bytes.find(text), text.size(), other);
            };
            const std::string extent = "[ 10 cm 10 cm ]";
            for (const char* const good : {"[2 inch 1.5 mm]", "[595 842]", "[10 cm 300]", "{ 1 point 2 point }"})
            {
                EXPECT_THAT(Findings(with(extent, good)), IsEmpty()) << good;
            }
            for (const char* const bad :
                 {"(10 cm 10 cm)", "[]", "[10 cm]", "[10 cm 10 cm 10 cm]", "[cm 10 cm 10]", "[10 10 cm cm]",
                  "[10 miles 10 miles]", "[-10 cm 10 cm]", "[0 cm 10 cm]", "10"})
            {
                EXPECT_THAT(
                    Findings(with(extent, bad)),
                    ElementsAre("104: value of /CIP3AdmPSExtent is not an array of two lengths"))
                    << bad;
                EXPECT_THAT(Findings(with(extent, bad), CheckDepth::Sizes), IsEmpty()) << bad;
            }
            EXPECT_THAT(
                Findings(with("(Job)", '(' + std::string(65536, 'J') + ')')),
                ElementsAre(
                    "77: value of /CIP3AdmJobName has 65538 bytes and is left out; the most that is read is 65537"));
            EXPECT_THAT(Findings(with("(Job)", '(' + std::string(65535, 'J') + ')')), IsEmpty());
            EXPECT_THAT(Findings(with("(Job)", "<4A6F62>")), IsEmpty());
            const char* const others[][3] = {
                {"(Job)", "12", "77: value of /CIP3AdmJobName is not a string"},
                {"(Job)", "()", "46: sheet's job has an empty name"},
                {"(K)", "7", "value of /CIP3AdmSeparationNames is not an array of strings"},
                {"Version 3.0", "Version x", "0: header's version is not a number"},
                {"00ff", "00f", "ASCIIHex data has an odd number of digits"},
                {"CIP3BeginFront", "/CIP3TransferFilmCurveData [0 0 1] def CIP3BeginFront", "is not a curve"},
                {"CIP3BeginFront", "/CIP3TransferFilmCurveData [0 0 1.1 1] def CIP3BeginFront", "is not a curve"},
                {"CIP3BeginFront", "/CIP3TransferPlateCurveData [.5 0 .4 1] def CIP3BeginFront", "is not a curve"},
                {"CIP3EndSheet", "CIP3BeginFront CIP3EndFront CIP3EndSheet", "sheet has a second front"},
                {"CIP3EndSheet", "CIP3BeginBack CIP3EndBack CIP3EndSheet", "back has no separation"},
            };
            for (const auto& [text, other, finding] : others)
            {
                EXPECT_THAT(Findings(with(text, other)), testing::Contains(HasSubstr(finding))) << other;
            }
            EXPECT_THAT(
                Findings(with("CIP3BeginFront", "/CIP3TransferFilmCurveData [0 0 .5 .7 1 1] def CIP3BeginFront")),
                IsEmpty());
            std::string nameless = TwoSheets();
            nameless.replace(324 + 23, 3, ")  ").replace(1352, 27, std::string(27, ' '));
            EXPECT_THAT(Findings(nameless), ElementsAre("1313: sheet has no name, but is one of several"));
            EXPECT_THAT(
                Findings(FrontOf("(K)", Separation(4, 1, "None", "Binary", "abc"))),
                ElementsAre(HasSubstr("no line end stands after the preview's data")));
        }

        TEST(Check, EntriesThatUsersNeedAreAskedFor)
        {
            const std::string good = FrontOf("(K) (Gold)", HexPixels(2, 1, "00ff>"));
            EXPECT_THAT(Findings(good), ElementsAre(HasSubstr("front has 2 separation names for 1 separations")));
            const auto without = [](std::string bytes, const std::string& text)
            { return bytes.erase(bytes.find(text), text.size()); };
            EXPECT_THAT(
                Findings(without(without(good, " (Gold)"), "/CIP3AdmJobName (Job) def\n")),
                ElementsAre("46: sheet has no /CIP3AdmJobName"));
            EXPECT_THAT(
                Findings(without(without(good, " (Gold)"), "/CIP3PreviewImageMatrix [2 0 0 -1 0 1] def\n")),
                ElementsAre(HasSubstr("preview image has no /CIP3PreviewImageMatrix")));
            std::string shifted = without(good, " (Gold)");
            shifted.replace(shifted.find("[2 0 0 -1 0 1]"), 14, "[2 0 0 -1 1 1]");
            EXPECT_THAT(Findings(shifted), ElementsAre(HasSubstr("does not fit the image's width and height")));
            EXPECT_THAT(
                Findings(without(without(good, " (Gold)"), "0 -")),
                ElementsAre(HasSubstr("is not an array of 6 numbers")));
        }

        TEST(Check, BytesBehindTheClosingCommentAreTold)
        {
            EXPECT_THAT(Findings(TwoSheets() + "\r\n\x04"), IsEmpty());
            EXPECT_THAT(Findings(TwoSheets() + "\nmore"), ElementsAre("2040: 4 bytes stand after the closing comment"));
        }

        TEST(Check, FindingsComeInTheOrderOfTheFile)
        {
            std::string bytes = Damaged(68, "0000000602");
            bytes[1230] = 'g';
            bytes.resize(2030);
            EXPECT_THAT(
                Findings(bytes), ElementsAre(HasSubstr("68: "), HasSubstr("1230: "), HasSubstr("file has no closing")));
        }

        TEST(Check, WhatADamageMayHaveTakenIsNotMissed)
        {
            // In the second sheet, before all its entries; then after its name.
            EXPECT_THAT(
                Findings(TwoSheets().substr(0, 1333)),
                ElementsAre("1333: file ends within the section CIP3BeginSheet that begins at byte 1313"));
            EXPECT_THAT(
                Findings(Damaged(324 + 23, "T2").substr(0, 1400)),
                ElementsAre(HasSubstr("324: "), HasSubstr("1379: ")));
        }
    }
}
