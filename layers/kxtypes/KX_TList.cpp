#include "ClassRecord.h"
#include "Failure.h"

#include <kxtypes.h>

KX_TList::KX_TList() = default;
KX_TList::KX_TList(const KX_TList&) = default;
KX_TList& KX_TList::operator=(const KX_TList&) = default;
KX_TList::~KX_TList() = default;

std::uint32_t KX_TList::Count() const
{
    return static_cast<std::uint32_t>(m_elements.size());
}

const KX_TAny& KX_TList::At(std::uint32_t index) const
{
    if (index >= m_elements.size())
        kxtypes::ThrowFailure(
            "No element " + std::to_string(index) + " in a list of " + std::to_string(m_elements.size()), __LINE__,
            __FILE__);
    return m_elements[index];
}

void KX_TList::Append(const KX_TAny& value)
{
    m_elements.push_back(value);
}

const char* KX_TList::KX_ClassName()
{
    return "KX_TList";
}

const KX_TClass* KX_TList::KX_ClassObject()
{
    return kxtypes::ClassObjectOf<KX_TList>(KX_TObject::KX_ClassObject());
}

void* KX_TList::KX_Self()
{
    return this;
}

const void* KX_TList::KX_DynamicInfo(const char* typeName) const
{
    if (const void* const own = kxtypes::OwnDynamicInfo<KX_TList>(typeName, this))
        return own;
    return KX_TObject::KX_DynamicInfo(typeName);
}
