#include "cip3output/kernels/ASCII85.h"
#include "tests/cip3output/PlainLoops.h"
#include "tests/cip3output/kernels/Encoded.h"
#include "tests/cip3output/kernels/Lines.h"
#include "tests/support/KernelTargets.h"

namespace CIP3OutputTest
{
    using RasterOutput::Kernels::EncodeASCII85;

    class ASCII85Kernel : public TestSupport::KernelTest
    {
    };

    TEST_P(ASCII85Kernel, EqualsThePlainLoop)
    {
        std::mt19937 random(1);
        for (std::size_t groups = 0; groups <= 4 * 16 + 10; ++groups)
        {
            for (int kind = 0; kind < LineKinds; ++kind)
            {
                const std::string line = AnyLine(kind, 4 * groups, random);
                ASSERT_EQ(Encoded(EncodeASCII85, line, groups, 5 * groups, groups % 64), PlainLoops::ASCII85(line))
                    << "groups " << groups << " kind " << kind;
            }
        }
    }

    /// Every set of zero groups among sixteen.
    TEST_P(ASCII85Kernel, LeavesOutWhatZeroGroupsStandFor)
    {
        for (unsigned zeros = 0; zeros < 1U << 16; zeros += zeros < 256 ? 1 : 37)
        {
            std::string line;
            for (unsigned group = 0; group < 16; ++group)
            {
                line += (zeros >> group & 1) != 0 ? std::string(4, '\0') : std::string("\0\0\0\1", 4);
            }
            ASSERT_EQ(Encoded(EncodeASCII85, line, 16, 80, 0), PlainLoops::ASCII85(line)) << "zero groups " << zeros;
        }
    }

    /// The divisions are by reciprocals: the numbers on either side of every multiple of 85 * 85 would show one that is
    /// not exact.
    TEST_P(ASCII85Kernel, DividesExactly)
    {
        std::string line;
        const auto put = [&line](std::uint32_t number)
        {
            for (int shift = 24; shift >= 0; shift -= 8)
            {
                line.push_back(static_cast<char>(number >> shift));
            }
        };
        for (std::uint64_t multiple = 0; multiple <= 0xFFFFFFFFU; multiple += 85 * 85)
        {
            put(static_cast<std::uint32_t>(multiple));
            put(static_cast<std::uint32_t>(multiple - 1));
            put(static_cast<std::uint32_t>(multiple + multiple / 7225 % 7225));
        }
        const std::size_t groups = line.size() / 4;
        ASSERT_TRUE(Encoded(EncodeASCII85, line, groups, 5 * groups, 0) == PlainLoops::ASCII85(line));
    }

    INSTANTIATE_TEST_SUITE_P(
        , ASCII85Kernel, testing::ValuesIn(TestSupport::TargetsOfThisMachine()), TestSupport::TargetName);
}
