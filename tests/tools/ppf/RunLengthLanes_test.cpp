// Passing over run-length data in lanes, held against a walk of one token after the other.

#include "ppf/RunLengthLanes.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace PpfTest
{
    using namespace Ppf;

    namespace
    {
        constexpr char EndMark = '\x80';
        constexpr std::uint64_t Unbounded = std::uint64_t{1} << 60;

        /// Tokens of every kind, end marks among the literal bytes; long runs are as rare as in a picture with grain.
        std::string GrainyTokens(std::size_t size)
        {
            std::mt19937 random(7);
            std::string tokens;
            while (tokens.size() < size)
            {
                const auto kind = random() % 4;
                const auto longest = random() % 20 == 0 ? 128u : 9u;
                const auto literal = random() % longest;
                tokens += static_cast<char>(kind == 0 ? 129 + random() % 127 : literal);
                for (std::size_t i = 0; i < (kind == 0 ? 1 : literal + 1); ++i)
                {
                    tokens += static_cast<char>(random() % 3 == 0 ? 0x80 : random());
                }
            }
            return tokens;
        }

        /// Asserts that `place` is what a walk of one token after the other comes to, with no end mark before it.
        void ExpectIsPlace(RunLengthPlace place, const std::string& tokens, std::size_t begin)
        {
            std::uint64_t passed = 0;
            std::size_t at = begin;
            while (at < place.at)
            {
                const auto length = static_cast<unsigned char>(tokens[at]);
                ASSERT_NE(tokens[at], EndMark) << "passed at " << at;
                passed += length < 128 ? length + 1u : 257u - length;
                at += length < 128 ? length + 2u : 2u;
            }
            EXPECT_EQ(at, place.at) << "no token begins there";
            EXPECT_EQ(passed, place.passed);
        }

        TEST(RunLengthLanes, ComesNearlyToTheEndInStepWithTheTokens)
        {
            const std::pair<std::string, std::size_t> cases[] = {
                {GrainyTokens(1500000), 40000},
                {std::string(1500000, '\x81'), 40000},
                // Literals of one byte, each a zero: lanes begin at odd places after the first token, and stay there.
                {std::string("\x01xy", 3) + std::string(200000, '\0'), 70000},
            };
            for (const auto& [tokens, mostLeft] : cases)
            {
                SCOPED_TRACE(tokens.size());
                const RunLengthPlace place = PassTokens(tokens, 0, Unbounded);
                ExpectIsPlace(place, tokens, 0);
                EXPECT_GT(place.at, tokens.size() - mostLeft);
            }
        }

        TEST(RunLengthLanes, StopsInFrontOfTheEndMarkAndOfTheWantedSize)
        {
            std::string tokens = GrainyTokens(150000);
            const std::size_t end = tokens.size();
            tokens += EndMark + GrainyTokens(150000);
            const RunLengthPlace atMark = PassTokens(tokens, 0, Unbounded);
            ExpectIsPlace(atMark, tokens, 0);
            EXPECT_LE(atMark.at, end);
            EXPECT_GT(atMark.at, end - 70000);
            for (const std::uint64_t wanted : {std::uint64_t{0}, std::uint64_t{1}, atMark.passed / 2, atMark.passed})
            {
                SCOPED_TRACE(wanted);
                const RunLengthPlace place = PassTokens(tokens, 0, wanted);
                ExpectIsPlace(place, tokens, 0);
                EXPECT_TRUE(place.passed < wanted || place.passed == 0);
            }
        }
    }
}
