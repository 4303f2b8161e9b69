#include "ppf/DecodedSize.h"
#include "ppf/Failure.h"
#include "tests/cip3output/PlainLoops.h"
#include "tests/support/Failures.h"
#include "tests/tools/ppf/Files.h"

#include <gtest/gtest.h>

#include <random>

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
            std::minstd_rand random(7);
            for (int shift = 0; shift < 3; ++shift)
            {
                std::string data(static_cast<std::size_t>(shift) * 2, '\xFF');
                std::size_t size = static_cast<std::size_t>(shift) * 2;
                while (data.size() < 700000)
                {
                    const auto length = static_cast<unsigned char>(random() >> 8);
                    if (length == 0x80)
                    {
                        continue;
                    }
                    data += static_cast<char>(length);
                    data.append(length < 0x80 ? length + 1u : 1u, static_cast<char>(random() >> 8));
                    size += length < 0x80 ? length + 1u : 257u - length;
                }
                const DecodedSize counted =
                    SizeOf("RunLengthDecode", "ASCIIHexDecode", PlainLoops::ASCIIHex(data + '\x80') + ">", 1);
                EXPECT_EQ(counted.bytes, size) << shift;
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
