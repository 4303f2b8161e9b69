#include "ppf/Number.h"
#include "ppf/Scanner.h"
#include "ppf/StringLiteral.h"
#include "tests/tools/ppf/Files.h"

#include <gmock/gmock.h>

namespace PpfTest
{
    using namespace Ppf;

    namespace
    {
        using testing::ElementsAre;
        using testing::StartsWith;

        std::vector<std::string> Texts(std::string_view bytes)
        {
            std::vector<std::string> texts;
            Scanner scanner(bytes);
            for (Token token = scanner.Next(); token.kind != TokenKind::End; token = scanner.Next())
            {
                texts.emplace_back(token.text);
            }
            return texts;
        }

        TEST(Scanner, TokensEndAtWhiteSpaceAndDelimitersOfEveryKind)
        {
            EXPECT_THAT(
                Texts(std::string_view("/a/b 12\t(x)[1]\f{c}\0d<</k<41>>>//e\r%z\rend", 41)),
                ElementsAre(
                    "/a", "/b", "12", "(x)", "[", "1", "]", "{", "c", "}", "d", "<<", "/k", "<41>", ">>", "//e", "%z",
                    "end"));
        }

        TEST(Scanner, StringsKeepBalancedAndEscapedParentheses)
        {
            EXPECT_THAT(
                Texts("(a(b)c) (\\)) (\\\\)(\\() <~!!~><~9jq~>"),
                ElementsAre("(a(b)c)", "(\\))", "(\\\\)", "(\\()", "<~!!~>", "<~9jq~>"));
        }

        TEST(Scanner, CommentMarkWithinStringIsText)
        {
            EXPECT_THAT(Texts("(100 % cotton) % rest (\n/x"), ElementsAre("(100 % cotton)", "% rest (", "/x"));
        }

        TEST(Scanner, BrokenStringsAreToldByTheirPlace)
        {
            const std::pair<std::string, std::uint64_t> cases[] = {
                {"  (a(b)", 2}, {"/x )", 3}, {" <41", 1}, {"<4x>", 2}, {" >", 1}, {"<~abc>", 0},
            };
            for (const auto& [bytes, offset] : cases)
            {
                EXPECT_THAT(FailureOf([text = bytes] { Texts(text); }), StartsWith(std::to_string(offset) + ": "))
                    << bytes;
            }
        }

        TEST(Scanner, NumbersHavePostScriptsForms)
        {
            const std::pair<std::string_view, double> numbers[] = {
                {"0", 0},           {"+17", 17},     {"-98", -98},   {"0000000601", 601}, {"-.002", -.002},
                {"34.5", 34.5},     {"6.02e2", 602}, {"1e+06", 1e6}, {"4.", 4},           {"8#1777", 1023},
                {"16#FFfe", 65534}, {"2#1000", 8},   {"36#Z", 35},
            };
            for (const auto& [text, value] : numbers)
            {
                EXPECT_EQ(NumberOf(text), value) << text;
            }
            for (const std::string_view text :
                 {"", "-", ".", "1a", "inf", "nan", "0x10", "16#", "37#1", "8#9", "1e", "--1", "1e999", "2#1.1"})
            {
                EXPECT_EQ(NumberOf(text), std::nullopt) << text;
            }
        }

        TEST(Scanner, IntegersAreWholeAndExact)
        {
            EXPECT_EQ(IntegerOf("4.0"), 4);
            EXPECT_EQ(IntegerOf("-12"), -12);
            EXPECT_EQ(IntegerOf("4.5"), std::nullopt);
            EXPECT_EQ(IntegerOf("9007199254740993e3"), std::nullopt);
        }

        TEST(Scanner, StringsAreDecoded)
        {
            const std::pair<std::string_view, std::string> strings[] = {
                {"()", ""},
                {"(a(b)c)", "a(b)c"},
                {"(\\(\\)\\\\\\n\\t\\q)", "()\\\n\tq"},
                {"(\\101\\7\\0539\\400\\1012)", std::string("A\a+9\0A2", 7)},
                {"(one\\\ntwo\\\r\nthree\\\rfour)", "onetwothreefour"},
                {"(a\rb\r\nc\nd)", "a\nb\nc\nd"},
                {"<4 1\n42>", "AB"},
                {"<414>", "A@"},
                {"<~87cUR~>", "Hell"},
                {"<~z!!~>", std::string(5, '\0')},
            };
            for (const auto& [text, value] : strings)
            {
                EXPECT_EQ(StringOf(text), value) << text;
            }
            EXPECT_EQ(StringOf("/name"), std::nullopt);
            EXPECT_EQ(StringOf("<~!~>"), std::nullopt);
        }
    }
}
