// The compiled part of Highway that run-time dispatch stands on: which instruction sets this machine has. Highway's own
// shared library has it too, but measures the machine's timer when it is loaded: 3.1 ms of processor time for every
// process that loads ours, more than all else of converting a small preview (2.8 ms). The declarations are those of
// <hwy/targets.h>; tests hold the answers against the library's.
#include "highway/Detection.h"

#include <hwy/highway.h>
#include <hwy/targets.h>

#include <algorithm>
#include <atomic>
#include <initializer_list>

#if HWY_ARCH_X86
// The header has C's name for the type, which C++ compilers offer only as an extension.
#define _Bool bool // NOLINT(readability-identifier-naming): C's name
#include <sys/platform/x86.h>
#endif

static_assert(
    HWY_MAJOR == 1 && HWY_MINOR == 0, "Another Highway than 1.0 may declare and choose targets otherwise: compare "
                                      "<hwy/targets.h> and its targets.cc with "
                                      "this file, and then change this line");

#if HWY_ARCH_X86
namespace Highway
{
    namespace
    {
        /// What a target needs beyond those before it: every extension that the compiler may use in it, as its attribute
        /// string in <hwy/ops/set_macros-inl.h> lists them, and what Highway itself asks for.
        struct Level
        {
            std::int64_t target = 0;
            std::initializer_list<unsigned> extensions;
        };

        const Level Levels[] = {
            {HWY_SSSE3, {x86_cpu_SSE2, x86_cpu_SSSE3}},
            {HWY_SSE4, {x86_cpu_SSE4_1, x86_cpu_SSE4_2, x86_cpu_PCLMULQDQ, x86_cpu_AES}},
            {HWY_AVX2,
             {x86_cpu_AVX, x86_cpu_AVX2, x86_cpu_BMI1, x86_cpu_BMI2, x86_cpu_FMA, x86_cpu_F16C, x86_cpu_LZCNT}},
            {HWY_AVX3, {x86_cpu_AVX512F, x86_cpu_AVX512VL, x86_cpu_AVX512DQ, x86_cpu_AVX512BW}},
            {HWY_AVX3_DL,
             {x86_cpu_VPCLMULQDQ, x86_cpu_AVX512_VBMI, x86_cpu_AVX512_VBMI2, x86_cpu_VAES, x86_cpu_AVX_VNNI,
              x86_cpu_AVX512_BITALG, x86_cpu_AVX512_VPOPCNTDQ, x86_cpu_AVX512_VNNI, x86_cpu_GFNI}},
        };
    }

    std::int64_t TargetsWith(IsActive isActive)
    {
        std::int64_t targets = 0;
        for (const Level& level : Levels)
        {
            if (!std::all_of(level.extensions.begin(), level.extensions.end(), isActive))
            {
                break;
            }
            targets |= level.target;
        }
        return targets;
    }
}
#endif

namespace hwy
{
    namespace
    {
        std::atomic<std::int64_t> targetsForTest{0};

        std::int64_t DetectTargets()
        {
#if HWY_ARCH_X86
            // The C library asked the processor and the operating system when the process started. Asking the processor
            // again would leave a virtual machine for its host each time, some ten microseconds.
            return Highway::TargetsWith([](unsigned extension) { return x86_cpu_active(extension); });
#else
            return HWY_ENABLED_BASELINE;
#endif
        }
    }

    std::int64_t SupportedTargets()
    {
        static const std::int64_t detected = DetectTargets() | HWY_EMU128 | HWY_SCALAR;
        const std::int64_t wanted = targetsForTest;
        return wanted != 0 ? wanted : detected;
    }

    void SetSupportedTargetsForTest(std::int64_t targets)
    {
        targetsForTest = targets;
        GetChosenTarget().DeInit();
    }

    ChosenTarget& GetChosenTarget()
    {
        static ChosenTarget chosen;
        return chosen;
    }
}
