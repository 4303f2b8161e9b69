// Which instruction sets this machine has: the compiled part of Highway that run-time dispatch stands on. Highway's own
// shared library has it too, but measures the machine's timer whenever it is loaded, which costs every process that loads
// ours some milliseconds, more than all else of its start. The declarations are those of <hwy/targets.h>.
//
// A target is reported only if the machine has every extension that the compiler may use in it, as the target's attribute
// string in <hwy/ops/set_macros-inl.h> lists them.

#include <hwy/targets.h>

#include <atomic>
#include <cstdint>

#if HWY_ARCH_X86
// The header has C's name for the type, which C++ compilers offer only as an extension.
#define _Bool bool
#include <sys/platform/x86.h>
#endif

namespace hwy
{
    namespace
    {
        std::atomic<std::int64_t> disabledTargets{0};
        std::atomic<std::int64_t> targetsForTest{0};

#if HWY_ARCH_X86
        // The C library asked the processor and the operating system once, when the process started. Asking the processor
        // again would leave a virtual machine for its host each time, some ten microseconds.
        std::int64_t DetectTargets()
        {
            std::int64_t targets = 0;
            const auto add = [&targets](bool active, std::int64_t target)
            {
                targets |= active ? target : 0;
                return active;
            };
            if (add(CPU_FEATURE_ACTIVE(SSSE3), HWY_SSSE3) &&
                add(CPU_FEATURE_ACTIVE(SSE4_1) && CPU_FEATURE_ACTIVE(SSE4_2) && CPU_FEATURE_ACTIVE(PCLMULQDQ) &&
                        CPU_FEATURE_ACTIVE(AES),
                    HWY_SSE4) &&
                add(CPU_FEATURE_ACTIVE(AVX) && CPU_FEATURE_ACTIVE(AVX2) && CPU_FEATURE_ACTIVE(FMA) &&
                        CPU_FEATURE_ACTIVE(F16C) && CPU_FEATURE_ACTIVE(BMI1) && CPU_FEATURE_ACTIVE(BMI2) &&
                        CPU_FEATURE_ACTIVE(LZCNT),
                    HWY_AVX2) &&
                add(CPU_FEATURE_ACTIVE(AVX512F) && CPU_FEATURE_ACTIVE(AVX512DQ) && CPU_FEATURE_ACTIVE(AVX512BW) &&
                        CPU_FEATURE_ACTIVE(AVX512VL),
                    HWY_AVX3))
            {
                add(CPU_FEATURE_ACTIVE(AVX512_VBMI) && CPU_FEATURE_ACTIVE(AVX512_VBMI2) && CPU_FEATURE_ACTIVE(GFNI) &&
                        CPU_FEATURE_ACTIVE(VAES) && CPU_FEATURE_ACTIVE(VPCLMULQDQ) && CPU_FEATURE_ACTIVE(AVX512_VNNI) &&
                        CPU_FEATURE_ACTIVE(AVX512_BITALG) && CPU_FEATURE_ACTIVE(AVX512_VPOPCNTDQ) &&
                        CPU_FEATURE_ACTIVE(AVX_VNNI),
                    HWY_AVX3_DL);
            }
            return targets;
        }
#else
        // Other machines: what the compiler may assume without asking.
        std::int64_t DetectTargets()
        {
            return HWY_ENABLED_BASELINE;
        }
#endif
    }

    std::int64_t SupportedTargets()
    {
        static const std::int64_t detected = DetectTargets() | HWY_EMU128 | HWY_SCALAR;
        const std::int64_t wanted = targetsForTest;
        const std::int64_t targets = (wanted != 0 ? wanted : detected) & ~disabledTargets.load();
        return targets != 0 ? targets : HWY_STATIC_TARGET;
    }

    void DisableTargets(std::int64_t targets)
    {
        disabledTargets = targets;
        GetChosenTarget().DeInit();
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
