// The failure class as an object of the object library.
#include "tests/Sheetvane/Failures.h"

#include <Sheetvane/KX_ECIP3Exception.h>

#include <memory>

namespace SheetvaneTest
{
    namespace
    {
        /// Writes down what goes through it.
        class Trace : public KX_IPacking
        {
        public:
            void BeginBaseClass(const char* name) override { text += std::string("(") + name + ' '; }
            void EndBaseClass(const char* name) override { text += std::string(") ") + name; }
            void WriteText(const char* bytes, std::uint32_t) override { text += std::string(bytes) + ' '; }
            void WriteUInt32(std::uint32_t number) override { text += std::to_string(number) + ' '; }

            std::string text;
        };

        KX_ECIP3Exception Prepared()
        {
            KX_ECIP3Exception exception(KX_TString("text"));
            exception.__PREPARE_FOR_THROW__(3, "unit");
            return exception;
        }
    }

    TEST(KX_ECIP3Exception, QueriesAnswerForItselfAndThenForItsBase)
    {
        const KX_ECIP3Exception exception;
        const auto* const classObject = static_cast<const KX_TClass*>(exception.KX_DynamicInfo(nullptr));
        EXPECT_EQ(exception.KX_DynamicInfo(nullptr), classObject);
        EXPECT_EQ(classObject->registered, 1);
        EXPECT_STREQ(classObject->name, "KX_ECIP3Exception");
        EXPECT_EQ(classObject->Superclass(), KX_EException::KX_ClassObject());
        EXPECT_EQ(exception.KX_DynamicInfo("KX_ECIP3Exception"), &exception);
        EXPECT_EQ(exception.KX_DynamicInfo("KX_EException"), static_cast<const KX_EException*>(&exception));
        EXPECT_EQ(exception.KX_DynamicInfo("KX_TString"), nullptr);
        EXPECT_TRUE(exception.HasSuperclass("KX_EException"));
        EXPECT_TRUE(exception.HasInterface("KX_IThrowable"));

        const std::unique_ptr<KX_TObject> made(classObject->New());
        EXPECT_STREQ(made->ClassName(), "KX_ECIP3Exception");
    }

    TEST(KX_ECIP3Exception, PacksItsBaseBetweenBrackets)
    {
        Trace trace;
        Prepared().KX_Pack(trace);
        EXPECT_EQ(trace.text, "(KX_EException text unit 3 ) KX_EException");
    }

    TEST(KX_ECIP3Exception, UnpacksAndClonesWhatItPacks)
    {
        KX_ECIP3Exception source = Prepared();
        KX_ECIP3Exception target;
        source.KX_Move(target.KX_Self());
        EXPECT_STREQ(target.KX_Message().c_str(), "text");
        EXPECT_EQ(target.KX_ExceptionLine(), 3u);
        EXPECT_TRUE(source.KX_IsIdent(target));
        EXPECT_FALSE(source.KX_IsIdent(KX_EException(KX_TString("text"))));

        const std::unique_ptr<KX_IPackable> clone(source.KX_Clone());
        EXPECT_STREQ(clone->ClassName(), "KX_ECIP3Exception");
        EXPECT_TRUE(clone->KX_IsIdent(source));
    }
}
