// ASCIIHex encoding, compiled once for every kind of vectors and chosen at run time. A vector of bytes is widened to
// 16 bits, each byte's halves are moved into the two bytes of its lane, and one shuffle turns them into digits.
#include "cip3output/kernels/ASCIIHex.h"

#include "cip3output/PpfFormat.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "cip3output/kernels/ASCIIHex.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace RasterOutput::Kernels
{
    namespace HWY_NAMESPACE
    {
        namespace hn = hwy::HWY_NAMESPACE;

        unsigned char* EncodeASCIIHex(const unsigned char* input, std::size_t size, unsigned char* output)
        {
            std::size_t done = 0;
#if HWY_TARGET != HWY_SCALAR
            const hn::ScalableTag<std::uint16_t> wideTag;
            const hn::Rebind<unsigned char, decltype(wideTag)> narrowTag;
            const hn::Repartition<unsigned char, decltype(wideTag)> byteTag;
            const auto digits =
                hn::LoadDup128(byteTag, reinterpret_cast<const unsigned char*>(PpfFormat::HexDigits.data()));
            const auto halves = hn::Set(wideTag, 0x0F0F);
            const std::size_t lanes = hn::Lanes(wideTag);

            for (; done + lanes <= size; done += lanes)
            {
                const auto wide = hn::PromoteTo(wideTag, hn::LoadU(narrowTag, input + done));
                // The lower byte of a lane comes first in memory: the upper half goes there.
                const auto split = hn::And(hn::Or(hn::ShiftRight<4>(wide), hn::ShiftLeft<8>(wide)), halves);
                hn::StoreU(hn::TableLookupBytes(digits, hn::BitCast(byteTag, split)), byteTag, output + 2 * done);
            }
#endif
            for (; done < size; ++done)
            {
                output[2 * done] = static_cast<unsigned char>(PpfFormat::HexDigits[input[done] >> 4]);
                output[2 * done + 1] = static_cast<unsigned char>(PpfFormat::HexDigits[input[done] & 0x0F]);
            }
            return output + 2 * size;
        }
    }
}
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace RasterOutput::Kernels
{
    HWY_EXPORT(EncodeASCIIHex);

    unsigned char* EncodeASCIIHex(const unsigned char* input, std::size_t size, unsigned char* output) noexcept
    {
        return HWY_DYNAMIC_DISPATCH(EncodeASCIIHex)(input, size, output);
    }
}
#endif
