// The decoders of preview data, each on hand-made data first, then on long data cut into reads of every size.

#include "ppf/ASCII85Source.h"
#include "ppf/ASCIIHexSource.h"
#include "ppf/BinarySource.h"
#include "ppf/RunLengthSource.h"
#include "tests/cip3output/PlainLoops.h"
#include "tests/tools/ppf/Files.h"

#include <gmock/gmock.h>

namespace PpfTest
{
    using namespace Ppf;

    namespace
    {
        using testing::HasSubstr;

        std::string ReadAll(ByteSource& source, std::size_t step)
        {
            std::string all;
            std::vector<unsigned char> piece(step);
            for (std::size_t got = step; got == step;)
            {
                got = source.Read(piece.data(), step);
                all.append(reinterpret_cast<const char*>(piece.data()), got);
            }
            EXPECT_EQ(source.Read(piece.data(), step), 0u) << "data goes on after its end";
            return all;
        }

        template <typename Source>
        std::string Decoded(std::string_view text, std::size_t step = 1000)
        {
            Source source({text, 0, 0});
            return ReadAll(source, step);
        }

        std::string Expanded(std::string_view tokens, std::size_t step = 1000)
        {
            RunLengthSource source(std::make_unique<BinarySource>(EncodedText{tokens, 0, 0}));
            return ReadAll(source, step);
        }

        TEST(ASCII85Source, DecodesGroupsOfEveryForm)
        {
            const std::pair<std::string_view, std::string> cases[] = {
                {"~>", ""},
                {"z~>", std::string(4, '\0')},
                {"s8W-!~>", "\xFF\xFF\xFF\xFF"},
                {"!<N?+~>", "\1\2\3\4"},
                {"!!~>", std::string(1, '\0')},
                {"!!!!~>", std::string(3, '\0')},
                {"J,~>", "\x80"},
                {"<~!<N?+~>", "\1\2\3\4"},
                {" ! <\nN?\r\n+ ~ >", "\1\2\3\4"},
                {"rVult!WQMW~>", std::string("\xFD\xFF\xFF\0\1\xFF\x5F\x80", 8)},
            };
            for (const auto& [text, bytes] : cases)
            {
                EXPECT_EQ(Decoded<ASCII85Source>(text), bytes) << text;
                EXPECT_EQ(Decoded<ASCII85Source>(text, 1), bytes) << text;
            }
        }

        TEST(ASCII85Source, RefusesWhatIsNoGroup)
        {
            const auto failure = [](std::string_view text) { return FailureOf([&] { Decoded<ASCII85Source>(text); }); };
            EXPECT_EQ(failure("!<N?+!<v"), "7: ASCII85 data holds a character that is not one of its digits");
            EXPECT_EQ(failure("!!z!!~>"), "2: ASCII85 data has \"z\" within a group");
            EXPECT_THAT(failure("s8W-\"~>"), HasSubstr("above 4294967295"));
            EXPECT_THAT(failure("zzzzzzzzzuuuuuzzzz~>"), HasSubstr("above 4294967295"));
            EXPECT_EQ(failure("!<N?+!~>"), "6: ASCII85 data ends in a group of one character");
            EXPECT_EQ(failure("!<N?+"), "5: ASCII85 data has no end mark \"~>\"");
            EXPECT_THAT(failure("!<N?+\x80!!!!~>"), HasSubstr("5: ASCII85 data holds"));
        }

        TEST(ASCII85Source, LongDataIsTheSameInReadsOfEverySize)
        {
            const std::string bytes = RandomRuns(100000).bytes;
            std::string text = PlainLoops::ASCII85(bytes) + "~>";
            for (std::size_t at = 0; at < text.size(); at += 61)
            {
                text.insert(at, "\n");
            }
            for (const std::size_t step : {1U, 2U, 3U, 5U, 7U, 64U, 1000U, 10000U})
            {
                EXPECT_TRUE(Decoded<ASCII85Source>(text, step) == bytes) << "reads of " << step;
            }
        }

        TEST(ASCIIHexSource, DecodesDigitsOfBothCasesAnywhere)
        {
            const std::pair<std::string_view, std::string> cases[] = {
                {">", ""},         {"00fF>", std::string("\0\xFF", 2)}, {" 4\n1 4\r\n2 >", "AB"}, {"414>", "A@"},
                {"4142>zz", "AB"},
            };
            for (const auto& [text, bytes] : cases)
            {
                EXPECT_EQ(Decoded<ASCIIHexSource>(text), bytes) << text;
                EXPECT_EQ(Decoded<ASCIIHexSource>(text, 1), bytes) << text;
            }
            EXPECT_EQ(
                FailureOf([] { Decoded<ASCIIHexSource>("41g1>"); }),
                "2: ASCIIHex data holds a character that is not a digit");
            EXPECT_EQ(FailureOf([] { Decoded<ASCIIHexSource>("4142"); }), "4: ASCIIHex data has no end mark \">\"");
        }

        TEST(RunLengthSource, ExpandsRunsAtTheirBounds)
        {
            const std::string literal128(128, 'q');
            const std::pair<std::string, std::string> cases[] = {
                {"\x80", ""},
                {"", ""},
                {std::string("\0A\x80", 3), "A"},
                {"\xFF"
                 "A\x80",
                 "AA"},
                {"\x81"
                 "A\x80",
                 std::string(128, 'A')},
                {"\x7F" + literal128 + "\x80", literal128},
                {std::string("\x02xyz\xFE", 5) + std::string("\0\x80", 2), std::string("xyz\0\0\0", 6)},
                {"\xFF"
                 "A\x80ignored",
                 "AA"},
            };
            for (const auto& [tokens, bytes] : cases)
            {
                for (const std::size_t step : {1U, 3U, 1000U})
                {
                    EXPECT_EQ(Expanded(tokens, step), bytes)
                        << testing::PrintToString(tokens) << " in reads of " << step;
                }
            }
            EXPECT_EQ(FailureOf([] { Expanded("\x05xyz"); }), "4: run-length data ends within a run");
            EXPECT_EQ(FailureOf([] { Expanded("\xFF"); }), "1: run-length data ends within a run");
        }
    }
}
