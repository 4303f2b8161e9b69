// Run-length compression, compiled once for every kind of vectors and chosen at run time. Which bytes equal the byte after
// them is found for many at once, as a bit each; where these bits change, a run begins or ends. With a search from byte to
// byte the whole conversion of a flat page takes 3.4 times as long, and that of a photo twice as long.
#include "cip3output/kernels/RunLength.h"

#include "cip3output/kernels/RunLengthTokens.h"

#include <algorithm>
#include <cstdint>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "cip3output/kernels/RunLength.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#if HWY_TARGET <= HWY_AVX3_DL
#include "cip3output/kernels/RunLengthElements-inl.h"
#else

HWY_BEFORE_NAMESPACE();
namespace RasterOutput::Kernels
{
    namespace HWY_NAMESPACE
    {
        namespace hn = hwy::HWY_NAMESPACE;

        /// Bytes whose bits make a word.
        constexpr std::size_t WordSize = 64;

        /// A bit for each of the `count` bytes from `place` on, WordSize at most, that equals the byte after it.
        HWY_INLINE std::uint64_t EqualToNext(const unsigned char* place, std::size_t count)
        {
            std::uint64_t equal = 0;
            std::size_t done = 0;
#if HWY_TARGET != HWY_SCALAR
            const hn::CappedTag<unsigned char, WordSize> tag;
            for (; done + hn::Lanes(tag) <= count; done += hn::Lanes(tag))
            {
                // The first lane's bit is the lowest of the first byte, on a little-endian machine of the whole.
                std::uint64_t bits = 0;
                hn::StoreMaskBits(
                    tag, hn::Eq(hn::LoadU(tag, place + done), hn::LoadU(tag, place + done + 1)),
                    reinterpret_cast<unsigned char*>(&bits));
                equal |= bits << done;
            }
#endif
            for (; done < count; ++done)
            {
                equal |= std::uint64_t{place[done] == place[done + 1]} << done;
            }
            return equal;
        }

        unsigned char* EncodeRunLength(const unsigned char* input, std::size_t size, unsigned char* output)
        {
            const unsigned char* const end = input + size;
            const auto putLiteral = [end](const unsigned char* first, const unsigned char* last, unsigned char* place) {
                return PutLiteral(
                    first, static_cast<std::size_t>(last - first), static_cast<std::size_t>(end - first), place);
            };
            const unsigned char* literal = input; // first byte that no token stands for yet
            const unsigned char* run = nullptr;   // first byte of the run whose end is not found yet
            std::uint64_t lastEqual = 0;
            for (std::size_t place = 0; place < size; place += WordSize)
            {
                // The very last byte equals nothing, so that every run ends.
                const std::uint64_t equal = EqualToNext(input + place, std::min(WordSize, size - 1 - place));
                std::uint64_t edges = equal ^ (equal << 1 | lastEqual);
                lastEqual = equal >> (WordSize - 1);
                for (; edges != 0; edges &= edges - 1)
                {
                    const unsigned char* const edge = input + place + hwy::Num0BitsBelowLS1Bit_Nonzero64(edges);
                    if (run == nullptr)
                    {
                        run = edge;
                        continue;
                    }
                    output = putLiteral(literal, run, output);
                    literal = edge + 1;
                    output = PutRun(*run, static_cast<std::size_t>(literal - run), output);
                    run = nullptr;
                }
            }
            return putLiteral(literal, end, output);
        }
    }
}
HWY_AFTER_NAMESPACE();

#endif

#if HWY_ONCE
namespace RasterOutput::Kernels
{
    HWY_EXPORT(EncodeRunLength);

    unsigned char* EncodeRunLength(const unsigned char* input, std::size_t size, unsigned char* output) noexcept
    {
        return HWY_DYNAMIC_DISPATCH(EncodeRunLength)(input, size, output);
    }
}
#endif
