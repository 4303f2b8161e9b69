// Run-length compression, compiled once for every kind of vectors and chosen at run time. Everything follows from one bit
// per byte: whether it equals the byte behind it.
#include "cip3output/kernels/RunLength.h"

#include "cip3output/kernels/RunLengthTokens.h"

#include <algorithm>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "cip3output/kernels/RunLength.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#if HWY_TARGET <= HWY_AVX3_DL
#include "cip3output/kernels/RunLengthElements-inl.h"
#elif HWY_TARGET != HWY_SCALAR
#include "cip3output/kernels/RunLengthEdges-inl.h"
#else

HWY_BEFORE_NAMESPACE();
namespace RasterOutput::Kernels
{
    namespace HWY_NAMESPACE
    {
        using namespace RunLength;

        unsigned char* EncodeRunLength(const unsigned char* input, std::size_t size, unsigned char* output)
        {
            const unsigned char* const end = input + size;
            while (input != end)
            {
                const unsigned char* const pair = std::adjacent_find(input, end);
                output = PutLiteral(input, static_cast<std::size_t>(pair - input), output);
                input = pair;
                if (pair != end)
                {
                    const unsigned char value = *pair;
                    input = std::find_if(pair, end, [value](unsigned char byte) { return byte != value; });
                    output = PutRun(value, static_cast<std::size_t>(input - pair), output);
                }
            }
            return output;
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
