// The searches against a plain loop: every instruction set of the machine, all lengths past four of its vectors, several
// misalignments, and a difference in every place.
#include <PixelScan.h>

#include <gtest/gtest.h>
#include <hwy/targets.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace PixelScanTest
{
    using namespace PixelScan;

    using Byte = unsigned char;
    using Bytes = std::vector<Byte>;

    // Past four of the longest vectors, of 64 bytes, and the narrow ones that finish a range.
    constexpr std::size_t Longest = 4 * 64 + 70;

    const Byte* FirstOther(const Byte* begin, const Byte* end, Byte value)
    {
        return std::find_if(begin, end, [value](Byte byte) { return byte != value; });
    }

    class PixelScanTest : public testing::TestWithParam<std::int64_t>
    {
    protected:
        PixelScanTest() { ChooseFrom(GetParam()); }
        ~PixelScanTest() override { ChooseFrom(0); }

        // 0 stands for everything that the machine has.
        static void ChooseFrom(std::int64_t targets)
        {
            hwy::SetSupportedTargetsForTest(targets);
            hwy::GetChosenTarget().Update(hwy::SupportedTargets());
        }

        static void ExpectSameAsPlainLoop(const Byte* begin, const Byte* end, Byte value)
        {
            const Byte* const expected = FirstOther(begin, end, value);
            ASSERT_EQ(firstOtherThan(begin, end, value) - begin, expected - begin)
                << "value " << int{value} << ", length " << end - begin;
            if (value == 0)
            {
                ASSERT_EQ(firstNonZero(begin, end) - begin, expected - begin) << "length " << end - begin;
            }
        }
    };

    TEST_P(PixelScanTest, FindsADifferenceInEveryPlaceOfEveryLength)
    {
        for (const Byte value : Bytes{0x00, 0x7F, 0xFF})
        {
            for (std::size_t length = 0; length <= Longest; ++length)
            {
                // On the heap and of this very length, so that a sanitizer sees a read past either end.
                Bytes bytes(length, value);
                ExpectSameAsPlainLoop(bytes.data(), bytes.data() + length, value);
                for (std::size_t place = 0; place < length && !HasFatalFailure(); ++place)
                {
                    bytes[place] = static_cast<Byte>(value ^ (1 << place % 8));
                    ExpectSameAsPlainLoop(bytes.data(), bytes.data() + length, value);
                    bytes[place] = value;
                }
            }
        }
    }

    TEST_P(PixelScanTest, FindsTheFirstDifferenceOfSeveralFromAnyAlignment)
    {
        Bytes bytes(Longest + 64);
        for (std::size_t misalignment = 0; misalignment < 64; misalignment += 7)
        {
            const Byte* const begin = bytes.data() + misalignment;
            for (std::size_t place = 0; place < Longest; ++place)
            {
                std::fill(bytes.begin(), bytes.end(), static_cast<Byte>(9));
                bytes[misalignment + place] = 0;
                bytes[misalignment + (place + Longest) / 2] = 1;
                ASSERT_NO_FATAL_FAILURE(ExpectSameAsPlainLoop(begin, begin + Longest, 9)) << "at " << misalignment;
            }
        }
    }

    TEST_P(PixelScanTest, LooksAtNoByteOutsideTheRange)
    {
        Bytes bytes(Longest + 2);
        bytes.front() = bytes.back() = 1;
        for (std::size_t length = 0; length <= Longest; ++length)
        {
            bytes[length + 1] = 1;
            const Byte* const end = bytes.data() + 1 + length;
            ASSERT_EQ(firstNonZero(bytes.data() + 1, end), end) << "length " << length;
            bytes[length + 1] = 0;
        }
        ASSERT_EQ(firstNonZero(nullptr, nullptr), nullptr);
    }

    // Those that the machine has and the compiler can make code for.
    std::vector<std::int64_t> TargetsOfThisMachine()
    {
        std::vector<std::int64_t> targets;
        for (std::int64_t rest = hwy::SupportedTargets() & HWY_TARGETS; rest != 0; rest &= rest - 1)
        {
            targets.push_back(rest & -rest);
        }
        return targets;
    }

    INSTANTIATE_TEST_SUITE_P(
        Targets, PixelScanTest, testing::ValuesIn(TargetsOfThisMachine()),
        [](const auto& target) { return std::string(hwy::TargetName(target.param)); });
}
