// Locations.
#include "kxtypes/ClassRecord.h"
#include "kxtypes/Failure.h"

#include <kxtypes.h>

KX_TURL::KX_TURL()
    : isLocal(false)
{
}
KX_TURL::KX_TURL(const KX_TString& theLocalName)
    : localName(theLocalName)
    , isLocal(true)
{
}
KX_TURL::KX_TURL(const KX_TURL&) = default;
KX_TURL& KX_TURL::operator=(const KX_TURL&) = default;
KX_TURL::~KX_TURL() = default;

KX_TString KX_TURL::LocalName() const
{
    if (!isLocal)
    {
        KxTypes::ThrowFailure("The location has no local name", __LINE__, "layers/kxtypes/KX_TURL.cpp");
    }
    return localName;
}

const char* KX_TURL::KX_ClassName()
{
    return "KX_TURL";
}

const KX_TClass* KX_TURL::KX_ClassObject()
{
    return KxTypes::ClassObjectOf<KX_TURL>(KX_TObject::KX_ClassObject());
}

void* KX_TURL::KX_Self()
{
    return this;
}

const void* KX_TURL::KX_DynamicInfo(const char* typeName) const
{
    if (const void* const own = KxTypes::OwnDynamicInfo<KX_TURL>(typeName, this))
    {
        return own;
    }
    return KX_TObject::KX_DynamicInfo(typeName);
}
