// A value of any class behind one class.
#include "ClassRecord.h"

#include <kxtypes.h>

#include <utility>

KX_TAny::KX_TAny()
    : m_copy(nullptr)
{
}

KX_TAny::KX_TAny(const KX_TAny& other)
    : KX_IInterface(other)
    , KX_TObject(other)
    , m_value(other.m_value != nullptr ? other.m_copy(*other.m_value) : nullptr)
    , m_copy(other.m_copy)
{
}

KX_TAny::KX_TAny(KX_TAny&& other) noexcept
    : m_value(std::move(other.m_value))
    , m_copy(std::exchange(other.m_copy, nullptr))
{
}

KX_TAny& KX_TAny::operator=(KX_TAny other) noexcept
{
    m_value.swap(other.m_value);
    std::swap(m_copy, other.m_copy);
    return *this;
}

KX_TAny::~KX_TAny() = default;

const char* KX_TAny::KX_ClassName()
{
    return "KX_TAny";
}

const KX_TClass* KX_TAny::KX_ClassObject()
{
    return kxtypes::ClassObjectOf<KX_TAny>(KX_TObject::KX_ClassObject());
}

void* KX_TAny::KX_Self()
{
    return this;
}

const void* KX_TAny::KX_DynamicInfo(const char* typeName) const
{
    if (m_value != nullptr)
        return m_value->KX_DynamicInfo(typeName);
    if (const void* const own = kxtypes::OwnDynamicInfo<KX_TAny>(typeName, this))
        return own;
    return KX_TObject::KX_DynamicInfo(typeName);
}
