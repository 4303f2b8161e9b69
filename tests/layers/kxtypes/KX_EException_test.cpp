// An exception thrown, cast, packed and printed.
#include <kxtypes.h>

#include <gtest/gtest.h>

#include <sstream>
#include <stdexcept>

namespace
{
    /// A packed object as lines of text, and the way back.
    class TextPacking : public KX_IPacking
    {
    public:
        void BeginBaseClass(const char* name) override { text += std::string("(") + name + "\n"; }
        void EndBaseClass(const char* name) override { text += std::string(")") + name + "\n"; }
        void WriteText(const char* bytes, std::uint32_t size) override { text += std::string(bytes, size) + "\n"; }
        void WriteUInt32(std::uint32_t number) override { text += std::to_string(number) + "\n"; }

        std::string text;
    };

    class TextUnpacking : public KX_IUnpacking
    {
    public:
        explicit TextUnpacking(const std::string& text)
            : m_text(text)
        {
        }

        void BeginBaseClass(const char* name) override { EXPECT_EQ(Line(), std::string("(") + name); }
        void EndBaseClass(const char* name) override { EXPECT_EQ(Line(), std::string(")") + name); }
        KX_TString ReadText() override { return KX_TString(Line().c_str()); }
        std::uint32_t ReadUInt32() override { return static_cast<std::uint32_t>(std::stoul(Line())); }

    private:
        std::string Line()
        {
            std::string line;
            if (!std::getline(m_text, line))
                throw std::out_of_range("packed text ends early");
            return line;
        }

        std::istringstream m_text;
    };

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

TEST(KX_EException, PackedAndUnpackedIsIdentical)
{
    const KX_EException exception = Prepared();
    TextPacking packing;
    exception.KX_Pack(packing);
    EXPECT_EQ(packing.text, "out of ink\npress\n12\n");

    KX_EException other;
    EXPECT_FALSE(exception.KX_IsIdent(other));
    TextUnpacking unpacking(packing.text);
    static_cast<KX_IPackable&>(other) = unpacking;
    EXPECT_TRUE(exception.KX_IsIdent(other));
    EXPECT_FALSE(exception.KX_IsIdent(KX_TString("out of ink")));
}

TEST(KX_EException, SourceThatEndsEarlyChangesNothing)
{
    KX_EException exception = Prepared();
    TextUnpacking cutShort("paper jam\nfeeder\n");
    EXPECT_THROW(exception.KX_Unpack(cutShort), std::out_of_range);
    EXPECT_TRUE(exception.KX_IsIdent(Prepared()));
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
