// The sizes of the classes that hosts are compiled against, so that a change is a decision: a host that was built before
// it would not work with a library built after it.
#include <Sheetvane/SheetvaneConverter.h>

#include <gtest/gtest.h>

#include <rasteroutput/Exception.h>

namespace SheetvaneTest
{
    TEST(ClassSizes, AreThoseThatHostsWereCompiledWith)
    {
        // 64-bit pointers, and the strings and containers of GCC's standard library.
        EXPECT_EQ(sizeof(Sheetvane::SheetvaneConverter), 8u);
        EXPECT_EQ(sizeof(Sheetvane::SheetvaneConverter::CIP3Compression), 4u);
        EXPECT_EQ(sizeof(Sheetvane::SheetvaneConverter::CIP3Encoding), 4u);
        EXPECT_EQ(sizeof(Sheetvane::SheetvaneConverter::Side), 4u);
        EXPECT_EQ(sizeof(Sheetvane::SheetvaneConverter::Orientation), 4u);
        EXPECT_EQ(sizeof(KX_ECIP3Exception), sizeof(KX_EException));
        EXPECT_EQ(sizeof(KX_EException), 176u);
        EXPECT_EQ(sizeof(KX_TObject), 8u);
        EXPECT_EQ(sizeof(KX_TClass), 72u);
        EXPECT_EQ(sizeof(KX_TString), 48u);
        EXPECT_EQ(sizeof(KX_TURL), 64u);
        EXPECT_EQ(sizeof(KX_TDouble), 16u);
        EXPECT_EQ(sizeof(KX_TFloat), 16u);
        EXPECT_EQ(sizeof(KX_TInt32), 16u);
        EXPECT_EQ(sizeof(KX_TUInt32), 16u);
        EXPECT_EQ(sizeof(KX_TBool), 16u);
        EXPECT_EQ(sizeof(KX_TAny), 24u);
        EXPECT_EQ(sizeof(KX_TArray), 32u);
        EXPECT_EQ(sizeof(KX_TList), 32u);
        EXPECT_EQ(sizeof(KX_TDict), 64u);
        EXPECT_EQ(sizeof(KX_TConstIterator), 16u);
        EXPECT_EQ(sizeof(RasterOutput::Exception), 40u);
        EXPECT_EQ(sizeof(Tarnel::Exception), 8u);
    }
}
