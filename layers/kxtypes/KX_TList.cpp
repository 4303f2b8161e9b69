// The class of stack traces, which none of this library's exceptions records.
#include "kxtypes/ClassRecord.h"

#include <kxtypes.h>

KX_TList::KX_TList() = default;
KX_TList::KX_TList(const KX_TList&) = default;
KX_TList& KX_TList::operator=(const KX_TList&) = default;
KX_TList::~KX_TList() = default;

const char* KX_TList::KX_ClassName()
{
    return "KX_TList";
}

const KX_TClass* KX_TList::KX_ClassObject()
{
    return KxTypes::ClassObjectOf<KX_TList>(KX_TArray::KX_ClassObject());
}

void* KX_TList::KX_Self()
{
    return this;
}

const void* KX_TList::KX_DynamicInfo(const char* typeName) const
{
    if (const void* const own = KxTypes::OwnDynamicInfo<KX_TList>(typeName, this))
    {
        return own;
    }
    return KX_TArray::KX_DynamicInfo(typeName);
}
