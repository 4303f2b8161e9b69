#include "cip3output/kernels/Invert.h"
#include "tests/cip3output/PlainLoops.h"
#include "tests/cip3output/kernels/KernelTargets.h"
#include "tests/cip3output/kernels/Lines.h"

namespace PpfTest
{
    class InvertKernel : public KernelTest
    {
    };

    TEST_P(InvertKernel, EqualsThePlainLoopAndTouchesNothingElse)
    {
        std::mt19937 random(1);
        for (std::size_t size = 0; size <= 4 * 64 + 10; ++size)
        {
            const std::string line = AnyLine(0, size, random);
            TightBuffer tight(line, size % 64);
            RasterOutput::Kernels::InvertBytes(tight.begin(), size);
            ASSERT_EQ(std::string(tight.begin(), tight.begin() + size), PlainLoops::Invert(line)) << "length " << size;

            TightBuffer wide(line + line, size % 64);
            RasterOutput::Kernels::InvertBytes(wide.begin(), size);
            ASSERT_EQ(std::string(wide.begin() + size, wide.begin() + 2 * size), line) << "behind length " << size;
        }
    }

    INSTANTIATE_TEST_SUITE_P(, InvertKernel, testing::ValuesIn(TargetsOfThisMachine()), TargetName);
}
