// Runs a test once for every kind of vectors that this machine has.
#pragma once

#include "tests/cip3output/kernels/TargetInUse.h"

#include <gtest/gtest.h>
#include <hwy/highway.h>
#include <hwy/targets.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace CIP3OutputTest
{
    /// Fails unless the code of the target that it is given really runs.
    class KernelTest : public testing::TestWithParam<std::int64_t>
    {
    protected:
        /// Chosen for as long as the test runs. The target that all code is compiled for stays beside it, so that there
        /// always is one.
        KernelTest() { ChooseFrom(GetParam() | HWY_STATIC_TARGET); }
        ~KernelTest() override { ChooseFrom(0); }

        void SetUp() override { ASSERT_EQ(TargetInUse(), GetParam()); }

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

    /// Memory of exactly `size` bytes at `misalignment` bytes after a boundary, the end of which the sanitizer watches.
    class TightBuffer
    {
    public:
        TightBuffer(std::size_t size, std::size_t misalignment)
            : bytes(misalignment + size)
            , offset(misalignment)
        {
        }
        TightBuffer(const std::string& content, std::size_t misalignment)
            : TightBuffer(content.size(), misalignment)
        {
            std::copy(content.begin(), content.end(), begin());
        }

        unsigned char* begin() { return bytes.data() + offset; }

    private:
        std::vector<unsigned char> bytes;
        std::size_t offset;
    };

    /// What `encode(input, count, output)` writes for a line that ends with its buffer, into exactly `space` bytes.
    template <class Encode>
    std::string
    Encoded(Encode encode, const std::string& line, std::size_t count, std::size_t space, std::size_t misalignment)
    {
        TightBuffer input(line, misalignment);
        // Bytes that the kernel may not touch, and that no sanitizer guards: it writes some of its vectors masked.
        constexpr unsigned char Untouched = 0xA5;
        constexpr std::size_t Guard = 128;
        TightBuffer output(space + Guard, misalignment * 7 % 64);
        std::memset(output.begin() + space, Untouched, Guard);
        const unsigned char* const end = encode(input.begin(), count, output.begin());
        for (std::size_t i = 0; i < Guard; ++i)
        {
            EXPECT_EQ(output.begin()[space + i], Untouched) << "byte " << i << " after the space";
        }
        TightBuffer exact(space, misalignment * 7 % 64);
        encode(input.begin(), count, exact.begin());
        return std::string(output.begin(), output.begin() + (end - output.begin()));
    }
}
