// A kernel that does nothing but say which it is, chosen as all are.
#include "tests/cip3output/kernels/TargetInUse.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "tests/cip3output/kernels/TargetInUse.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace CIP3OutputTest
{
    namespace HWY_NAMESPACE
    {
        std::int64_t TargetInUse()
        {
            return HWY_TARGET;
        }
    }
}
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace CIP3OutputTest
{
    HWY_EXPORT(TargetInUse);

    std::int64_t TargetInUse()
    {
        return HWY_DYNAMIC_DISPATCH(TargetInUse)();
    }
}
#endif
