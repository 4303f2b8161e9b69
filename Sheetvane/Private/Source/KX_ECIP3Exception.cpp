// The class between its base, which holds everything, and the object library, which learns of it at its first query.
#include <Sheetvane/KX_ECIP3Exception.h>

#include <cstring>

namespace Sheetvane
{
    namespace
    {
        constexpr char ExceptionName[] = "KX_ECIP3Exception";

        KX_TObject* NewException()
        {
            return new KX_ECIP3Exception;
        }
    }
}

KX_ECIP3Exception::KX_ECIP3Exception() = default;
KX_ECIP3Exception::KX_ECIP3Exception(const KX_TString& theMessage)
    : KX_EException(theMessage) // NOLINT(bugprone-throw-keyword-missing): the base part, no temporary
{
}
KX_ECIP3Exception::KX_ECIP3Exception(const KX_ECIP3Exception&) = default;
KX_ECIP3Exception& KX_ECIP3Exception::operator=(const KX_ECIP3Exception&) = default;
KX_ECIP3Exception::~KX_ECIP3Exception() = default;

void* KX_ECIP3Exception::KX_Self()
{
    return this;
}

// The one place where the class comes to be known to the object library.
const void* KX_ECIP3Exception::KX_DynamicInfo(const char* typeName) const
{
    KX_TClass* const classObject = KX_TClass::GetClassObject(
        false, Sheetvane::ExceptionName, sizeof(KX_ECIP3Exception), KX_EException::KX_ClassObject(),
        &Sheetvane::NewException, nullptr);
    if (typeName == nullptr)
    {
        if (classObject->registered == 0)
        {
            classObject->registered = 1;
        }
        return classObject;
    }
    if (std::strcmp(typeName, classObject->name) == 0)
    {
        return this;
    }
    return KX_EException::KX_DynamicInfo(typeName);
}

void KX_ECIP3Exception::KX_Throw()
{
    throw KX_ECIP3Exception(*this);
}

void KX_ECIP3Exception::KX_Pack(KX_IPacking& packing) const
{
    packing.BeginBaseClass(KX_EException::KX_ClassName());
    KX_EException::KX_Pack(packing);
    packing.EndBaseClass(KX_EException::KX_ClassName());
}

void KX_ECIP3Exception::KX_Unpack(KX_IUnpacking& unpacking)
{
    unpacking.BeginBaseClass(KX_EException::KX_ClassName());
    KX_EException::KX_Unpack(unpacking);
    unpacking.EndBaseClass(KX_EException::KX_ClassName());
}

KX_IPackable* KX_ECIP3Exception::KX_Clone() const
{
    return new KX_ECIP3Exception(*this);
}
