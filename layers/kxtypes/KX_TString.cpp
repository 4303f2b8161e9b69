// Text.
#include "kxtypes/ClassRecord.h"
#include "kxtypes/PackBuffer.h"

#include <kxtypes.h>

namespace KxTypes
{
    namespace
    {
        std::string BytesOf(const char* text, std::uint32_t length)
        {
            if (text == nullptr)
            {
                return {};
            }
            return length == KX_TString::ToTerminator ? std::string(text) : std::string(text, length);
        }
    }
}

KX_TString::KX_TString() = default;
KX_TString::KX_TString(const char* text, std::uint32_t length)
    : bytes(KxTypes::BytesOf(text, length))
{
}
KX_TString::KX_TString(const KX_TString&) = default;
KX_TString& KX_TString::operator=(const KX_TString&) = default;
KX_TString::~KX_TString() = default;

const char* KX_TString::c_str() const
{
    return bytes.c_str();
}

std::size_t KX_TString::Length() const
{
    return bytes.size();
}

const char* KX_TString::KX_ClassName()
{
    return "KX_TString";
}

const KX_TClass* KX_TString::KX_ClassObject()
{
    return KxTypes::ClassObjectOf<KX_TString>(KX_TObject::KX_ClassObject());
}

void* KX_TString::KX_Self()
{
    return this;
}

const void* KX_TString::KX_DynamicInfo(const char* typeName) const
{
    if (const void* const own = KxTypes::OwnDynamicInfo<KX_TString>(typeName, this))
    {
        return own;
    }
    if (KxTypes::SameName(typeName, "KX_IPackable"))
    {
        return static_cast<const KX_IPackable*>(this);
    }
    return KX_TObject::KX_DynamicInfo(typeName);
}

void KX_TString::KX_Pack(KX_IPacking& packing) const
{
    packing.WriteText(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
}

void KX_TString::KX_Unpack(KX_IUnpacking& unpacking)
{
    *this = unpacking.ReadText();
}

KX_IPackable* KX_TString::KX_Clone() const
{
    return new KX_TString(*this);
}

bool KX_TString::KX_IsIdent(const KX_IPackable& other) const
{
    return KxTypes::SameName(ClassName(), other.ClassName()) && KxTypes::Packed(*this) == KxTypes::Packed(other);
}
