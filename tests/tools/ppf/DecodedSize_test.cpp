#include "ppf/DecodedSize.h"
#include "ppf/Failure.h"
#include "tests/cip3output/PlainLoops.h"
#include "tests/support/Failures.h"
#include "tests/tools/ppf/Files.h"

#include <gtest/gtest.h>

namespace PpfTest
{
    using namespace Ppf;

    namespace
    {
        DecodedSize
        SizeOf(const std::string& compression, const std::string& encoding, const std::string& data, int width)
        {
            const SoundFile file(FrontOf("(K)", Separation(width, 1, compression, encoding, data)));
            return CountDecoded(file.document, file.Preview());
        }

        /// Runs of all lengths over more than one block, so that runs are cut at every place of one.
        TEST(DecodedSize, RunsAreCountedAsTheDecoderExpandsThem)
        {
            const RandomRuns runs(1000000);
            for (std::size_t shift = 0; shift < 3; ++shift)
            {
                const std::string data = std::string(shift * 2, '\xFF') + runs.tokens;
                const DecodedSize counted =
                    SizeOf("RunLengthDecode", "ASCIIHexDecode", PlainLoops::ASCIIHex(data + '\x80') + ">", 1);
                EXPECT_EQ(counted.bytes, 2 * shift + runs.bytes.size()) << shift;
                EXPECT_TRUE(counted.hasEndMark) << shift;
                EXPECT_EQ(counted.bytesAfterMark, 0u) << shift;
            }
        }

        TEST(DecodedSize, RunThatIsCutOffIsDamage)
        {
            for (const char* const encoding : {"ASCIIHexDecode", "ASCII85Decode"})
            {
                const std::string data = encoding[5] == 'H' ? "0511>" : "\"onW~>";
                EXPECT_EQ(
                    TestSupport::FailureOf<FormatError>([&] { SizeOf("RunLengthDecode", encoding, data, 6); }),
                    "run-length data ends within a run")
                    << encoding;
            }
        }
    }
}
