#include "cip3output/kernels/RunLength.h"
#include "tests/cip3output/Bytes.h"
#include "tests/cip3output/PlainLoops.h"
#include "tests/cip3output/kernels/Encoded.h"
#include "tests/cip3output/kernels/Lines.h"
#include "tests/support/KernelTargets.h"

namespace CIP3OutputTest
{
    using RasterOutput::Kernels::EncodeRunLength;

    class RunLengthKernel : public TestSupport::KernelTest
    {
    };

    TEST_P(RunLengthKernel, EqualsThePlainLoopForAllShortLines)
    {
        std::mt19937 random(1);
        for (std::size_t size = 0; size <= 4 * 64 + 10; ++size)
        {
            for (int kind = 0; kind < LineKinds; ++kind)
            {
                const std::string line = AnyLine(kind, size, random);
                ASSERT_EQ(
                    Encoded(EncodeRunLength, line, size, 2 * size, (size + static_cast<std::size_t>(kind)) % 64),
                    PlainLoops::RunLength(line))
                    << "length " << size << " kind " << kind;
            }
        }
    }

    /// Longer than the stretches, windows and tokens that the kernels work in.
    TEST_P(RunLengthKernel, EqualsThePlainLoopForLongLines)
    {
        std::mt19937 random(2);
        for (int round = 0; round < 350; ++round)
        {
            const std::size_t size = 1500 + random() % 7000;
            const std::string line = AnyLine(round % LineKinds, size, random);
            ASSERT_EQ(Encoded(EncodeRunLength, line, size, 2 * size, random() % 64), PlainLoops::RunLength(line))
                << "length " << size << " kind " << round % LineKinds;
        }
    }

    /// A pair, or a literal byte, at every place of a line that is otherwise one token.
    TEST_P(RunLengthKernel, EqualsThePlainLoopForAnEdgeAtEveryPlace)
    {
        constexpr std::size_t Size = 2048 + 300;
        const std::string literal = Literal(Size);
        for (std::size_t place = 0; place + 1 < Size; ++place)
        {
            std::string line = literal;
            line[place] = line[place + 1];
            ASSERT_EQ(Encoded(EncodeRunLength, line, Size, 2 * Size, 0), PlainLoops::RunLength(line))
                << "pair at " << place;
            line.assign(Size, 'x');
            line[place] = 'y';
            ASSERT_EQ(Encoded(EncodeRunLength, line, Size, 2 * Size, 0), PlainLoops::RunLength(line))
                << "byte at " << place;
        }
    }

    INSTANTIATE_TEST_SUITE_P(
        , RunLengthKernel, testing::ValuesIn(TestSupport::TargetsOfThisMachine()), TestSupport::TargetName);
}
