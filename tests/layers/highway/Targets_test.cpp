// The choice of an instruction set: as Highway's own library makes it on this machine, and on machines that lack something.
#include "highway/Detection.h"

#include <gtest/gtest.h>
#include <hwy/highway.h>
#include <hwy/targets.h>

#include <cstdint>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <dlfcn.h>

#if HWY_ARCH_X86
#define _Bool bool
#include <sys/platform/x86.h>
#endif

namespace HighwayTest
{
    /// Targets that this file is compiled to choose from.
    constexpr std::int64_t Known = HWY_TARGETS;

    /// A function of Highway's own library, which is loaded beside ours; null if there is none.
    template <class Function>
    Function* OfOwnLibrary(const char* name)
    {
        static void* const library = dlopen("libhwy.so.1", RTLD_NOW | RTLD_LOCAL);
        return library != nullptr ? reinterpret_cast<Function*>(dlsym(library, name)) : nullptr;
    }

    /// Place in a dispatch table that is chosen after an update from the supported targets.
    std::size_t ChosenIndex(hwy::ChosenTarget& chosen, std::int64_t supported)
    {
        chosen.Update(supported);
        return chosen.GetIndex();
    }

    TEST(Targets, AnswerAsHighwaysOwnLibraryForEveryTarget)
    {
        auto* const supportedTargets = OfOwnLibrary<std::int64_t()>("_ZN3hwy16SupportedTargetsEv");
        auto* const setSupportedTargets = OfOwnLibrary<void(std::int64_t)>("_ZN3hwy26SetSupportedTargetsForTestEl");
        auto* const chosenTarget = OfOwnLibrary<hwy::ChosenTarget&()>("_ZN3hwy15GetChosenTargetEv");
        ASSERT_TRUE(supportedTargets != nullptr && setSupportedTargets != nullptr && chosenTarget != nullptr)
            << "libhwy.so.1 cannot be loaded, or is another version";
        std::vector<std::int64_t> orders = {0}; // as the machine is
        for (std::int64_t left = Known; left != 0; left &= left - 1)
        {
            orders.push_back((left & -left) | HWY_STATIC_TARGET);
        }
        for (const std::int64_t order : orders)
        {
            hwy::SetSupportedTargetsForTest(order);
            setSupportedTargets(order);
            EXPECT_EQ(hwy::SupportedTargets() & Known, supportedTargets() & Known) << order;
            EXPECT_FALSE(hwy::GetChosenTarget().IsInitialized()) << order;
            EXPECT_EQ(
                ChosenIndex(hwy::GetChosenTarget(), hwy::SupportedTargets()),
                ChosenIndex(chosenTarget(), supportedTargets()))
                << order;
        }
        hwy::SetSupportedTargetsForTest(0);
    }

#if HWY_ARCH_X86
    constexpr unsigned Nothing = ~0U;
    unsigned missing = Nothing;

    std::int64_t TargetsWithout(unsigned extension)
    {
        missing = extension;
        return Highway::TargetsWith([](unsigned asked) { return asked != missing; });
    }

    /// Highway's attribute strings say what the compiler may use in a target, by the compiler's names.
    TEST(Targets, NoneIsClaimedWithoutAnExtensionThatTheCompilerMayUseInIt)
    {
        const std::map<std::string, unsigned> numbers = {
            {"sse2", x86_cpu_SSE2},
            {"ssse3", x86_cpu_SSSE3},
            {"sse4.1", x86_cpu_SSE4_1},
            {"sse4.2", x86_cpu_SSE4_2},
            {"pclmul", x86_cpu_PCLMULQDQ},
            {"aes", x86_cpu_AES},
            {"avx", x86_cpu_AVX},
            {"avx2", x86_cpu_AVX2},
            {"bmi", x86_cpu_BMI1},
            {"bmi2", x86_cpu_BMI2},
            {"fma", x86_cpu_FMA},
            {"f16c", x86_cpu_F16C},
            {"avx512f", x86_cpu_AVX512F},
            {"avx512vl", x86_cpu_AVX512VL},
            {"avx512dq", x86_cpu_AVX512DQ},
            {"avx512bw", x86_cpu_AVX512BW},
            {"vpclmulqdq", x86_cpu_VPCLMULQDQ},
            {"avx512vbmi", x86_cpu_AVX512_VBMI},
            {"avx512vbmi2", x86_cpu_AVX512_VBMI2},
            {"vaes", x86_cpu_VAES},
            {"avxvnni", x86_cpu_AVX_VNNI},
            {"avx512bitalg", x86_cpu_AVX512_BITALG},
            {"avx512vpopcntdq", x86_cpu_AVX512_VPOPCNTDQ},
        };
        const std::map<std::int64_t, const char*> attributes = {
            {HWY_SSSE3, HWY_TARGET_STR_SSSE3},
            {HWY_SSE4, HWY_TARGET_STR_SSE4},
            {HWY_AVX2, HWY_TARGET_STR_AVX2},
            {HWY_AVX3, HWY_TARGET_STR_AVX3},
            {HWY_AVX3_DL,
             HWY_TARGET_STR_AVX3 ",vpclmulqdq,avx512vbmi,avx512vbmi2,vaes,avxvnni,avx512bitalg,avx512vpopcntdq"},
        };
        for (const auto& [target, names] : attributes)
        {
            EXPECT_NE(TargetsWithout(Nothing) & target, 0) << hwy::TargetName(target);
            std::istringstream list(names);
            for (std::string name; std::getline(list, name, ',');)
            {
                EXPECT_EQ(TargetsWithout(numbers.at(name)) & target, 0)
                    << hwy::TargetName(target) << " without " << name;
            }
        }
        EXPECT_EQ(TargetsWithout(x86_cpu_LZCNT) & HWY_AVX2, 0) << "Highway asks for it itself";
    }
#endif
}
