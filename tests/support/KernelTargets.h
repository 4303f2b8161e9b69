// Runs a test once for every kind of vectors that this machine has.
#pragma once

#include <gtest/gtest.h>
#include <hwy/highway.h>
#include <hwy/targets.h>

#include <cstdint>
#include <string>
#include <vector>

namespace TestSupport
{
    /// Its parameter is the target whose code runs as long as the test does.
    class KernelTest : public testing::TestWithParam<std::int64_t>
    {
    protected:
        /// The target that all code is compiled for stays beside it, so that there always is one.
        KernelTest() { ChooseFrom(GetParam() | HWY_STATIC_TARGET); }
        ~KernelTest() override { ChooseFrom(0); }

    private:
        /// 0 stands for everything that the machine has.
        static void ChooseFrom(std::int64_t targets)
        {
            hwy::SetSupportedTargetsForTest(targets);
            hwy::GetChosenTarget().Update(hwy::SupportedTargets());
        }
    };

    /// What the kernels are compiled for and this machine has.
    inline std::vector<std::int64_t> TargetsOfThisMachine()
    {
        std::vector<std::int64_t> targets;
        for (std::int64_t left = hwy::SupportedTargets() & HWY_TARGETS; left != 0; left &= left - 1)
        {
            targets.push_back(left & -left);
        }
        return targets;
    }

    inline std::string TargetName(const testing::TestParamInfo<std::int64_t>& info)
    {
        return hwy::TargetName(info.param);
    }
}
