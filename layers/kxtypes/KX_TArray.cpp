// Values by position.
#include "kxtypes/ClassRecord.h"
#include "kxtypes/Failure.h"

#include <kxtypes.h>

KX_TArray::KX_TArray() = default;
KX_TArray::KX_TArray(const KX_TArray&) = default;
KX_TArray& KX_TArray::operator=(const KX_TArray&) = default;
KX_TArray::~KX_TArray() = default;

std::uint32_t KX_TArray::Count() const
{
    return static_cast<std::uint32_t>(elements.size());
}

const KX_TAny& KX_TArray::At(std::uint32_t index) const
{
    if (index >= elements.size())
    {
        KxTypes::ThrowFailure(
            "No element " + std::to_string(index) + " in an array of " + std::to_string(elements.size()), __LINE__,
            "layers/kxtypes/KX_TArray.cpp");
    }
    return elements[index];
}

void KX_TArray::Append(const KX_TAny& value)
{
    elements.push_back(value);
}

const char* KX_TArray::KX_ClassName()
{
    return "KX_TArray";
}

const KX_TClass* KX_TArray::KX_ClassObject()
{
    return KxTypes::ClassObjectOf<KX_TArray>(KX_TObject::KX_ClassObject());
}

void* KX_TArray::KX_Self()
{
    return this;
}

const void* KX_TArray::KX_DynamicInfo(const char* typeName) const
{
    if (const void* const own = KxTypes::OwnDynamicInfo<KX_TArray>(typeName, this))
    {
        return own;
    }
    return KX_TObject::KX_DynamicInfo(typeName);
}
