// Ranges of bytes, owned and not.
#include "rasteroutput/DataRef.h"
#include "tests/rasteroutput/Chunks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <type_traits>

namespace RasterOutputTest
{
    using namespace RasterOutput;

    static_assert(!std::has_virtual_destructor_v<DataRef_Impl<DataRefTraits>>);

    TEST(DataRefInstance, RangeIsTheWholeArrayAndMovesThroughAllocateAlone)
    {
        Bytes elsewhere(8);
        DataRefInstance instance;
        EXPECT_EQ(instance.begin, nullptr);
        instance.Allocate(5);
        std::fill(instance.begin, instance.end, static_cast<unsigned char>(7));
        unsigned char* const before = instance.begin;
        instance.SetRange(elsewhere.data(), elsewhere.data() + elsewhere.size());
        EXPECT_EQ(instance.begin, before);
        EXPECT_EQ(instance.size(), 5u);
    }

    TEST(DataRefInstance, SecondAllocateLeavesTheArrayToTheCopiesThatShareIt)
    {
        DataRefInstance instance;
        instance.Allocate(1);
        *instance.begin = 42;
        const DataRefInstance copy = instance;
        instance.Allocate(2);
        EXPECT_NE(instance.begin, copy.begin);
        EXPECT_EQ(*copy.begin, 42);
    }
}
