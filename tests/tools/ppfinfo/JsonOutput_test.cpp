#include "tests/tools/ppf/Files.h"
#include "tests/tools/ppfinfo/Program.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace PpfInfoTest
{
    namespace
    {
        using Json = nlohmann::ordered_json;
        using PpfTest::FrontOf;
        using PpfTest::HexPixels;
        using PpfTest::Separation;
        using PpfTest::TwoSheets;

        Json JsonOf(const std::string& bytes, std::vector<std::string> arguments = {})
        {
            arguments.push_back("--json");
            const Outcome outcome = RunOn(bytes, arguments);
            return Json::parse(outcome.out);
        }

        Json& SeparationOf(Json& json, std::size_t index)
        {
            return json["sheets"][0]["surfaces"][0]["separations"][index];
        }

        /// The whole shape at once: members, their order, their types.
        TEST(JsonOutput, FileOfTwoSheetsIsWrittenAsPromised)
        {
            Json json = JsonOf(TwoSheets(), {"--zones", "1"});
            Json& separation = SeparationOf(json, 0);
            EXPECT_DOUBLE_EQ(separation["coverage"].get<double>(), 1402.0 / 2040 * 100);
            EXPECT_EQ(separation["zones"][0], separation["coverage"]);
            json["sheets"].erase(1);
            separation["coverage"] = 68;
            separation["zones"][0] = 68;
            EXPECT_EQ(
                json.dump(), R"({"version":"3.0","directory":[{"offset":601,"length":712,"sheetName":"S1"},)"
                             R"({"offset":1313,"length":710,"sheetName":"S2"}],"sheets":[{"offset":601,"length":712,)"
                             R"("jobName":"J","sheetName":"S1","extent":"2 inch 1 inch","parameters":{},)"
                             R"("surfaces":[{"side":"front","separations":[{"name":"Black","width":4,"height":2,)"
                             R"("resolution":[2,2],"compression":"RunLengthDecode","encoding":"ASCIIHexDecode",)"
                             R"("dataBytes":18,"coverage":68,"zones":[68]}]}]}]})");
        }

        TEST(JsonOutput, TextsAreUtf8OrElseLatin1AndValuesStayAsInTheFile)
        {
            std::string bytes = FrontOf("(Gr\xFCn) (Gr\xC3\xBCn)", HexPixels(1, 1, "00>") + HexPixels(1, 1, "00>"));
            bytes.replace(bytes.find("[ 10 cm 10 cm ]"), 15, "  [ 8.5 inch\n11 inch ] ");
            bytes.replace(
                bytes.find("(Job) def"), 9, "(a\\(b\\)\\101) def /CIP3AdmMake (Press\\0404) def /X [ 1 (M\xFC) ] def");
            Json json = JsonOf(bytes);
            EXPECT_EQ(json["sheets"][0]["jobName"], "a(b)A");
            EXPECT_EQ(json["sheets"][0]["sheetName"], "");
            EXPECT_EQ(json["sheets"][0]["extent"], "8.5 inch\n11 inch");
            EXPECT_EQ(json["sheets"][0]["parameters"].dump(), R"j({"CIP3AdmMake":"(Press\\0404)","X":"[ 1 (Mü) ]"})j");
            EXPECT_EQ(SeparationOf(json, 0)["name"], "Grün");
            EXPECT_EQ(SeparationOf(json, 1)["name"], "Grün");
            EXPECT_EQ(json["directory"].dump(), "[]");
        }

        TEST(JsonOutput, OnlyATransferCurveThatDoesSomethingIsAParameter)
        {
            std::string bytes = TwoSheets();
            const std::string straight = "/CIP3TransferFilmCurveData [0.0 0.0 1.0 1.0]";
            bytes.replace(bytes.find(straight), straight.size(), "/CIP3TransferFilmCurveData [0.0 0.1 1.0 1.0]");
            EXPECT_EQ(
                JsonOf(bytes)["sheets"][0]["parameters"].dump(),
                R"({"CIP3TransferFilmCurveData":"[0.0 0.1 1.0 1.0]"})");
        }

        TEST(JsonOutput, DataBytesCountTheEndMarkAndNoWhiteSpace)
        {
            const auto bytesOf =
                [](const std::string& compression, const std::string& encoding, const std::string& data)
            {
                Json json = JsonOf(FrontOf("(K)", Separation(4, 1, compression, encoding, data)));
                return SeparationOf(json, 0)["dataBytes"].get<int>();
            };
            EXPECT_EQ(bytesOf("None", "Binary", "\x10\x10\x10\x10"), 4);
            EXPECT_EQ(bytesOf("RunLengthDecode", "Binary", "\xFDg\x80"), 3);
            EXPECT_EQ(bytesOf("RunLengthDecode", "Binary", "\xFDg"), 2);
            EXPECT_EQ(bytesOf("None", "ASCIIHexDecode", "\n 00112233 >"), 10);
            EXPECT_EQ(bytesOf("None", "ASCII85Decode", "  <~z~>"), 5);
        }

        TEST(JsonOutput, SeparationsOfFourComponentsAndFractionsOfAResolution)
        {
            Json json = JsonOf(
                FrontOf(
                    "(C) (M) (Y) (K)",
                    HexPixels(
                        2, 1, "ff00ff00 0000ff00>",
                        "/CIP3PreviewImageComponents 4 def\n/CIP3PreviewImageResolution [299.999 72.0] def\n")),
                {"--zones", "2"});
            EXPECT_EQ(SeparationOf(json, 0)["zones"].dump(), "[100.0,0.0]");
            EXPECT_EQ(SeparationOf(json, 2)["coverage"], 100.0);
            EXPECT_EQ(SeparationOf(json, 3)["name"], "K");
            EXPECT_EQ(SeparationOf(json, 3)["resolution"].dump(), "[299.999,72]");
        }

        TEST(JsonOutput, ZonesThatCannotBeLeaveTheDocumentWhole)
        {
            std::string bytes = TwoSheets();
            bytes.replace(bytes.find("/CIP3PreviewImageResolution"), 6, "/CIP4A");
            const Outcome outcome = RunOn(bytes, {"--json", "--zone-width", "1.5inch"});
            EXPECT_EQ(outcome.status, 1);
            EXPECT_THAT(outcome.error, testing::HasSubstr("byte 1209: separation \"Black\" has no resolution"));
            EXPECT_THAT(outcome.error, testing::HasSubstr("give their number alone, with --zones"));
            Json json = Json::parse(outcome.out);
            EXPECT_EQ(SeparationOf(json, 0)["zones"].dump(), "[]");
            EXPECT_TRUE(SeparationOf(json, 0)["coverage"].is_number());
            EXPECT_EQ(json["sheets"][1]["surfaces"][0]["separations"][0]["zones"].size(), 2u);
        }

        TEST(JsonOutput, SeparationThatIsDamagedHasNoCoverage)
        {
            const std::string bytes = FrontOf("(K)", HexPixels(2, 1, "0>"));
            const Outcome outcome = RunOn(bytes, {"--json", "--zones", "2"});
            EXPECT_EQ(outcome.status, 1);
            EXPECT_THAT(outcome.error, testing::HasSubstr("preview's data ends in row 1 of 1"));
            Json json = Json::parse(outcome.out);
            EXPECT_TRUE(SeparationOf(json, 0)["coverage"].is_null());
            EXPECT_EQ(SeparationOf(json, 0)["zones"].dump(), "[]");
        }
    }
}
