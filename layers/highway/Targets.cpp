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
#include <cpuid.h>
#endif

namespace hwy
{
    namespace
    {
        std::atomic<std::int64_t> disabledTargets{0};
        std::atomic<std::int64_t> targetsForTest{0};

#if HWY_ARCH_X86
        // The registers of one leaf of CPUID, zeros where the machine has no such leaf.
        struct Leaf
        {
            Leaf(unsigned number, unsigned subNumber)
            {
                if (__get_cpuid_count(number, subNumber, &eax, &ebx, &ecx, &edx) == 0)
                {
                    eax = ebx = ecx = edx = 0;
                }
            }

            unsigned eax = 0, ebx = 0, ecx = 0, edx = 0;
        };

        constexpr bool HasAll(unsigned word, unsigned bits)
        {
            return (word & bits) == bits;
        }

        // The state components that the operating system saves: XCR0, read only if OSXSAVE says that it may be.
        std::uint32_t SavedState(unsigned featuresEcx)
        {
            constexpr unsigned osXsave = 1u << 27;
            if (!HasAll(featuresEcx, osXsave))
            {
                return 0;
            }
            std::uint32_t low = 0;
            std::uint32_t high = 0;
            __asm__("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
            return low;
        }

        // Bits of CPUID: Intel 64 and IA-32 Architectures Software Developer's Manual, volume 2A, table 3-8 (leaf 1: SSSE3
        // to RDRAND in ECX; leaf 7: EBX and ECX; leaf 7, sub-leaf 1: EAX); LZCNT is AMD's, leaf 80000001H, ECX.
        std::int64_t DetectTargets()
        {
            const Leaf features(1, 0);
            const Leaf extended(7, 0);
            const Leaf further(7, 1);
            const Leaf amd(0x80000001, 0);
            const std::uint32_t saved = SavedState(features.ecx);

            constexpr unsigned ssse3 = 1u << 9;
            constexpr unsigned pclmul = 1u << 1, sse41 = 1u << 19, sse42 = 1u << 20, aes = 1u << 25;
            constexpr unsigned fma = 1u << 12, avx = 1u << 28, f16c = 1u << 29;
            constexpr unsigned bmi = 1u << 3, avx2 = 1u << 5, bmi2 = 1u << 8;
            constexpr unsigned lzcnt = 1u << 5;
            constexpr unsigned avx512f = 1u << 16, avx512dq = 1u << 17, avx512bw = 1u << 30, avx512vl = 1u << 31;
            constexpr unsigned vbmi = 1u << 1, vbmi2 = 1u << 6, gfni = 1u << 8, vaes = 1u << 9, vpclmul = 1u << 10;
            constexpr unsigned vnni = 1u << 11, bitalg = 1u << 12, vpopcntdq = 1u << 14;
            constexpr unsigned avxVnni = 1u << 4;
            constexpr std::uint32_t ymmState = 0x06, zmmState = 0xE6;

            std::int64_t targets = 0;
            const auto add = [&targets](bool present, std::int64_t target)
            {
                targets |= present ? target : 0;
                return present;
            };
            if (add(HasAll(features.ecx, ssse3), HWY_SSSE3) &&
                add(HasAll(features.ecx, pclmul | sse41 | sse42 | aes), HWY_SSE4) &&
                add(HasAll(saved, ymmState) && HasAll(features.ecx, fma | avx | f16c) &&
                        HasAll(extended.ebx, bmi | avx2 | bmi2) && HasAll(amd.ecx, lzcnt),
                    HWY_AVX2) &&
                add(HasAll(saved, zmmState) && HasAll(extended.ebx, avx512f | avx512dq | avx512bw | avx512vl),
                    HWY_AVX3))
            {
                add(HasAll(extended.ecx, vbmi | vbmi2 | gfni | vaes | vpclmul | vnni | bitalg | vpopcntdq) &&
                        HasAll(further.eax, avxVnni),
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
