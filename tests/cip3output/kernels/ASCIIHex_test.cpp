#include "cip3output/kernels/ASCIIHex.h"
#include "tests/cip3output/PlainLoops.h"
#include "tests/cip3output/kernels/KernelTargets.h"
#include "tests/cip3output/kernels/Lines.h"

namespace CIP3OutputTest
{
    using RasterOutput::Kernels::EncodeASCIIHex;

    class ASCIIHexKernel : public KernelTest
    {
    };

    TEST_P(ASCIIHexKernel, EqualsThePlainLoop)
    {
        std::mt19937 random(1);
        for (std::size_t size = 0; size <= 4 * 64 + 10; ++size)
        {
            const std::string line = AnyLine(0, size, random);
            ASSERT_EQ(Encoded(EncodeASCIIHex, line, size, 2 * size, size % 64), PlainLoops::ASCIIHex(line))
                << "length " << size;
        }
    }

    INSTANTIATE_TEST_SUITE_P(, ASCIIHexKernel, testing::ValuesIn(TargetsOfThisMachine()), TargetName);
}
