// An exception thrown, cast, packed and printed.
#include <kxtypes.h>

#include <gtest/gtest.h>

#include <sstream>

namespace KxTypesTest
{
    namespace
    {
        KX_EException Prepared()
        {
            KX_EException exception(KX_TString("out of ink"));
            return exception.__PREPARE_FOR_THROW__(12, "press");
        }
    }

    TEST(KX_EException, ThrownByReferenceToAnInterfaceKeepsItsClassAndFields)
    {
        try
        {
            KX_EException exception = Prepared();
            exception.KX_Data() = KX_TInt32(4);
            static_cast<KX_IThrowable&>(exception).KX_Throw();
        }
        catch (const KX_EException& failure)
        {
            EXPECT_STREQ(failure.KX_Message().c_str(), "out of ink");
            EXPECT_STREQ(failure.KX_ExceptionFile(), "press");
            EXPECT_EQ(failure.KX_ExceptionLine(), 12u);
            EXPECT_STREQ(failure.KX_Data().ClassName(), "KX_TInt32");
            EXPECT_EQ(failure.KX_StackTrace().Count(), 0u);
        }
    }

    TEST(KX_EException, CastsToEachOfItsBases)
    {
        const KX_EException exception;
        EXPECT_EQ(exception.KX_Cast("KX_EException"), &exception);
        EXPECT_EQ(exception.KX_Cast("KX_TObject"), static_cast<const KX_TObject*>(&exception));
        EXPECT_EQ(exception.KX_Cast("KX_IInterface"), static_cast<const KX_IInterface*>(&exception));
        EXPECT_EQ(exception.KX_Cast("KX_IThrowable"), static_cast<const KX_IThrowable*>(&exception));
        EXPECT_EQ(exception.KX_Cast("KX_IPackable"), static_cast<const KX_IPackable*>(&exception));
        EXPECT_EQ(exception.KX_Cast("KX_IPrintable"), static_cast<const KX_IPrintable*>(&exception));
        EXPECT_TRUE(exception.HasInterface("KX_IPrintable"));
        EXPECT_FALSE(exception.HasInterface("KX_EException"));
    }

    TEST(KX_EException, PrintsClassMessageAndPlace)
    {
        std::ostringstream unprepared;
        KX_EException(KX_TString("out of ink")).PrintOn(unprepared);
        EXPECT_EQ(unprepared.str(), "KX_EException: out of ink");
        std::ostringstream prepared;
        Prepared().PrintOn(prepared);
        EXPECT_EQ(prepared.str(), "KX_EException: out of ink (press:12)");
    }
}
