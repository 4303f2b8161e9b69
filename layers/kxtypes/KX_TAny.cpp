// A value of any class, held by one class.
#include "kxtypes/ClassRecord.h"

#include <kxtypes.h>

#include <utility>

KX_TAny::KX_TAny()
    : copy(nullptr)
{
}

KX_TAny::KX_TAny(const KX_TAny& other)
    : KX_IInterface(other)
    , KX_TObject(other)
    , value(other.value != nullptr ? other.copy(*other.value) : nullptr)
    , copy(other.copy)
{
}

KX_TAny::KX_TAny(KX_TAny&& other) noexcept
    : value(std::move(other.value))
    , copy(std::exchange(other.copy, nullptr))
{
}

KX_TAny& KX_TAny::operator=(KX_TAny other) noexcept
{
    value.swap(other.value);
    std::swap(copy, other.copy);
    return *this;
}

KX_TAny::~KX_TAny() = default;

const char* KX_TAny::KX_ClassName()
{
    return "KX_TAny";
}

const KX_TClass* KX_TAny::KX_ClassObject()
{
    return KxTypes::ClassObjectOf<KX_TAny>(KX_TObject::KX_ClassObject());
}

void* KX_TAny::KX_Self()
{
    return this;
}

const void* KX_TAny::KX_DynamicInfo(const char* typeName) const
{
    if (value != nullptr)
    {
        return value->KX_DynamicInfo(typeName);
    }
    if (const void* const own = KxTypes::OwnDynamicInfo<KX_TAny>(typeName, this))
    {
        return own;
    }
    return KX_TObject::KX_DynamicInfo(typeName);
}
