// Inversion, compiled once for every kind of vectors and chosen at run time.
#include "cip3output/kernels/Invert.h"

#include <cstdint>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "cip3output/kernels/Invert.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace RasterOutput::Kernels
{
    namespace HWY_NAMESPACE
    {
        namespace hn = hwy::HWY_NAMESPACE;

        void InvertBytes(unsigned char* bytes, std::size_t size)
        {
            const hn::ScalableTag<unsigned char> tag;
            const std::size_t lanes = hn::Lanes(tag);
            if (size < lanes)
            {
                for (std::size_t i = 0; i < size; ++i)
                {
                    bytes[i] = static_cast<unsigned char>(~bytes[i]);
                }
                return;
            }
            // The decoder has only just stored the line. Loads of aligned vectors can take their bytes from its stores
            // where unaligned ones would have to wait for two of them, so the ends are left to vectors that overlap the
            // rest. They are read first and written last: what they share comes out the same.
            const auto first = hn::Not(hn::LoadU(tag, bytes));
            const auto last = hn::Not(hn::LoadU(tag, bytes + size - lanes));
            unsigned char* const end = bytes + size;
            const std::size_t misaligned = reinterpret_cast<std::uintptr_t>(bytes) % lanes;
            for (unsigned char* place = bytes - misaligned + lanes; place + lanes <= end; place += lanes)
            {
                hn::Store(hn::Not(hn::Load(tag, place)), tag, place);
            }
            hn::StoreU(first, tag, bytes);
            hn::StoreU(last, tag, end - lanes);
        }
    }
}
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace RasterOutput::Kernels
{
    HWY_EXPORT(InvertBytes);

    void InvertBytes(unsigned char* bytes, std::size_t size) noexcept
    {
        HWY_DYNAMIC_DISPATCH(InvertBytes)(bytes, size);
    }
}
#endif
