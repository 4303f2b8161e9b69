// Inversion, compiled once for every kind of vectors and chosen at run time.
#include "cip3output/kernels/Invert.h"

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
            std::size_t done = 0;
            for (; done + lanes <= size; done += lanes)
            {
                hn::StoreU(hn::Not(hn::LoadU(tag, bytes + done)), tag, bytes + done);
            }
            for (; done < size; ++done)
            {
                bytes[done] = static_cast<unsigned char>(~bytes[done]);
            }
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
