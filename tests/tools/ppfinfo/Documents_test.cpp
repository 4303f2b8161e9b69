// Ink zones as CSV, JDF and XJDF: their numbers, and names of any kind.

#include "ppfinfo/XmlNames.h"
#include "tests/tools/ppf/Files.h"
#include "tests/tools/ppfinfo/Program.h"

#include <gmock/gmock.h>
#include <pugixml.hpp>

namespace PpfInfoTest
{
    using namespace PpfInfo;

    namespace
    {
        using PpfTest::Front;
        using PpfTest::FrontOf;
        using PpfTest::HexPixels;
        using PpfTest::Separation;
        using PpfTest::TwoSheets;
        using testing::ElementsAre;
        using testing::HasSubstr;

        const std::string Plain = HexPixels(2, 1, "ff80>");

        pugi::xml_document
        DocumentOf(const std::string& bytes, const std::string& option, std::vector<std::string> more = {})
        {
            const Folder folder;
            more.push_back(option);
            more.push_back(folder / "out");
            const Outcome outcome = RunOn(bytes, more);
            EXPECT_EQ(outcome.status, 0) << outcome.error;
            pugi::xml_document document;
            EXPECT_TRUE(document.load_string(folder.Read("out").c_str()));
            return document;
        }

        std::string Attribute(const pugi::xml_document& document, const char* path)
        {
            return document.select_node(path).attribute().value();
        }

        TEST(Csv, HasALinePerZoneWithMillimetresOfTheZones)
        {
            const Outcome outcome = RunOn(TwoSheets(), {"--csv"});
            EXPECT_EQ(outcome.status, 0);
            EXPECT_EQ(
                outcome.out, "sheet,sheet name,side,separation,zone,from mm,to mm,coverage %\r\n"
                             "1,S1,front,Black,1,0.0000,32.5000,60.9231\r\n"
                             "1,S1,front,Black,2,32.5000,50.8000,82.5822\r\n"
                             "2,S2,back,Black,1,0.0000,32.5000,60.9231\r\n"
                             "2,S2,back,Black,2,32.5000,50.8000,82.5822\r\n");
            EXPECT_THAT(
                RunOn(TwoSheets(), {"--csv", "--zones", "3", "--zone-width", "1inch"}).out,
                HasSubstr("1,S1,front,Black,2,25.4000,50.8000,75.0000\r\n"));
        }

        TEST(Csv, FieldsAreQuotedWhereTheyHaveToBe)
        {
            const std::string bytes =
                FrontOf("(a,b) (say \"x\") (two\\r\\nlines) (Gr\xFCn\\033)", Plain + Plain + Plain + Plain);
            const std::string out = RunOn(bytes, {"--csv", "--zones", "1"}).out;
            EXPECT_THAT(out, HasSubstr("\r\n1,,front,\"a,b\",1,"));
            EXPECT_THAT(out, HasSubstr("\r\n1,,front,\"say \"\"x\"\"\",1,"));
            EXPECT_THAT(out, HasSubstr("\r\n1,,front,\"two\r\nlines\",1,"));
            EXPECT_THAT(out, HasSubstr("\r\n1,,front,Gr\xC3\xBCn\\x1b,1,"));
        }

        TEST(Csv, SeparationThatIsDamagedHasNoCoverage)
        {
            const std::string bytes = FrontOf("(A) (B)", HexPixels(2, 1, "ff?0>") + Plain);
            const Outcome outcome = RunOn(bytes, {"--csv", "--zones", "1"});
            EXPECT_EQ(outcome.status, 1);
            EXPECT_THAT(
                outcome.out, HasSubstr("1,,front,A,1,0.0000,0.7056,\r\n1,,front,B,1,0.0000,0.7056,75.0980\r\n"));
        }

        TEST(Jdf, IsOneProfileDividedBySheetSideAndSeparation)
        {
            const auto document = DocumentOf(TwoSheets(), "--jdf", {"--zones", "4", "--zone-width", "1inch"});
            const auto whole = document.select_node("/JDF/ResourcePool/InkZoneProfile").node();
            EXPECT_EQ(Attribute(document, "/JDF/@Type"), "ConventionalPrinting");
            EXPECT_EQ(Attribute(document, "/JDF/@Version"), "1.5");
            EXPECT_EQ(Attribute(document, "/JDF/@JobID"), "J");
            EXPECT_STREQ(whole.attribute("PartIDKeys").value(), "SheetName Side Separation");
            EXPECT_STREQ(whole.attribute("ZoneWidth").value(), "72");
            EXPECT_STREQ(whole.attribute("ZoneSettingsX").value(), "0 0 0 0");
            EXPECT_STREQ(
                whole
                    .select_node("InkZoneProfile[@SheetName='S2']/InkZoneProfile[@Side='Back']/"
                                 "InkZoneProfile[@Separation='Black']/@ZoneSettingsX")
                    .attribute()
                    .value(),
                "0.000000 0.500000 0.874510 0.000000");
            EXPECT_EQ(
                Attribute(document, "/JDF/ResourceLinkPool/InkZoneProfileLink[@Usage='Input']/@rRef"),
                whole.attribute("ID").value());
        }

        TEST(Jdf, SheetsOfSeveralWidthsHaveTheirOwnZoneWidth)
        {
            const auto document =
                DocumentOf(FrontOf("(A) (B)", Plain + HexPixels(4, 1, "ff80ff00>")), "--jdf", {"--zones", "2"});
            EXPECT_EQ(Attribute(document, "//InkZoneProfile[@ID]/@ZoneWidth"), "1");
            EXPECT_EQ(Attribute(document, "//InkZoneProfile[@Separation='A']/@ZoneWidth"), "");
            EXPECT_EQ(Attribute(document, "//InkZoneProfile[@Separation='B']/@ZoneWidth"), "2");
        }

        TEST(Xjdf, IsOneSetWithAPartForEachSeparation)
        {
            const auto document = DocumentOf(TwoSheets(), "--xjdf", {"--zones", "4", "--zone-width", "1inch"});
            EXPECT_EQ(Attribute(document, "/XJDF/@Types"), "ConventionalPrinting");
            EXPECT_EQ(Attribute(document, "/XJDF/@Version"), "2.1");
            const auto set = document.select_node("/XJDF/ResourceSet[@Name='InkZoneProfile']").node();
            EXPECT_EQ(set.select_nodes("Resource").size(), 2u);
            const auto resource =
                set.select_node("Resource[Part[@SheetName='S2' and @Side='Back' and @Separation='Black']]").node();
            EXPECT_STREQ(resource.child("InkZoneProfile").attribute("ZoneWidth").value(), "72");
            EXPECT_STREQ(
                resource.child("InkZoneProfile").attribute("ZoneSettingsX").value(),
                "0.000000 0.500000 0.874510 0.000000");
        }

        TEST(Xjdf, NamesThatAreNoTokensAreReplacedAndSaid)
        {
            std::string bytes =
                FrontOf("(A B) (A_B) (A\\tB) (A_B) (<\\000&\xFF\"')", Plain + Plain + Plain + Plain + Plain);
            bytes.replace(bytes.find("(Job)"), 5, "(My job)");
            const auto document = DocumentOf(bytes, "--xjdf");
            std::vector<std::string> names;
            std::vector<std::string> descriptions;
            for (const auto& part : document.select_nodes("//Part"))
            {
                names.emplace_back(part.node().attribute("Separation").value());
                descriptions.emplace_back(part.node().parent().attribute("DescriptiveName").value());
            }
            EXPECT_THAT(names, ElementsAre("A_B_2", "A_B", "A_B_3", "A_B_4", "___\xC3\xBF__"));
            // The sheet has no name either.
            EXPECT_THAT(descriptions, ElementsAre("A B", "", "A\\x09B", "A_B", "<\\x00&\xC3\xBF\"'"));
            EXPECT_THAT(Attribute(document, "/XJDF/@JobID"), testing::StartsWith("My_job_"));
            EXPECT_EQ(Attribute(document, "/XJDF/@DescriptiveName"), "My job");
        }

        TEST(Documents, FileThatCannotBeReadInFullGivesNone)
        {
            const Folder folder;
            const std::string broken = FrontOf("(A) (B)", Plain + HexPixels(2, 1, "ff?0>"));
            const std::string cut = TwoSheets().substr(0, 2030);
            for (const char* const option : {"--jdf", "--xjdf"})
            {
                EXPECT_THAT(RunOn(broken, {option, folder / "x"}).error, HasSubstr("is not a digit")) << option;
                EXPECT_THAT(RunOn(cut, {option, folder / "x"}).error, HasSubstr("has no closing comment")) << option;
                EXPECT_THAT(RunOn(Front(""), {option, folder / "x"}).error, HasSubstr("file has no separation"))
                    << option;
            }
            EXPECT_THAT(folder.Names(), ElementsAre());
        }

        TEST(XmlNames, FittingNamesStayAndNoTwoBecomeAlike)
        {
            const std::string sixtyFour(64, 'x');
            EXPECT_EQ(JobIdOf("Spring brochure", NameForm::Text), "Spring brochure");
            EXPECT_EQ(JobIdOf(std::string(63, 'x'), NameForm::Text), std::string(63, 'x'));
            const std::string one = JobIdOf(sixtyFour + "1", NameForm::Text);
            EXPECT_EQ(one.size(), 63u);
            EXPECT_NE(one, JobIdOf(sixtyFour + "2", NameForm::Text));
            EXPECT_NE(JobIdOf("a b", NameForm::Token), JobIdOf("a_b", NameForm::Token));
            EXPECT_EQ(JobIdOf(sixtyFour, NameForm::Token), sixtyFour);
            EXPECT_THAT(
                DistinctNames({"", "a\nb", "a_b", "", std::string(1023, 'y'), std::string(1024, 'y')}, NameForm::Text),
                ElementsAre("_", "a_b_2", "a_b", "__2", std::string(1023, 'y'), std::string(1021, 'y') + "_2"));
            // Cut where characters are.
            const std::string umlauts = PpfTest::Repeated("\xC3\xBC", 100);
            EXPECT_EQ(JobIdOf(umlauts, NameForm::Text).substr(0, 92), umlauts.substr(0, 92));
        }
    }
}
