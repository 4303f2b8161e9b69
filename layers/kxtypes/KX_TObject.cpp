// Class queries and the checked cast, all of which come down to KX_DynamicInfo of the object's class.
#include "kxtypes/ClassRecord.h"
#include "kxtypes/Failure.h"

#include <kxtypes.h>

#include <string>

KX_IInterface::KX_IInterface() = default;
KX_IInterface::KX_IInterface(const KX_IInterface&) = default;
KX_IInterface& KX_IInterface::operator=(const KX_IInterface&) = default;
KX_IInterface::~KX_IInterface() = default;

bool KX_IInterface::HasInterface(const char* typeName) const
{
    // Classes and interfaces are all that an object can be cast to.
    return KX_Cast(typeName) != nullptr && !HasSuperclass(typeName);
}

const void* KX_IInterface::DynamicCast(const char* typeName, const char* file, std::int32_t line) const
{
    const void* const address = KX_Cast(typeName);
    if (address == nullptr)
    {
        const std::string wanted = typeName != nullptr ? typeName : "(null)";
        KxTypes::ThrowFailure(
            std::string("A ") + ClassName() + " is not a " + wanted, static_cast<std::uint32_t>(line), file);
    }
    return address;
}

KX_TObject::KX_TObject() = default;
KX_TObject::KX_TObject(const KX_TObject&) = default;
KX_TObject& KX_TObject::operator=(const KX_TObject&) = default;
KX_TObject::~KX_TObject() = default;

const char* KX_TObject::KX_ClassName()
{
    return "KX_TObject";
}

const KX_TClass* KX_TObject::KX_ClassObject()
{
    return KxTypes::ClassObjectOf<KX_TObject>(nullptr, nullptr);
}

const void* KX_TObject::KX_DynamicInfo(const char* typeName) const
{
    if (const void* const own = KxTypes::OwnDynamicInfo<KX_TObject>(typeName, this))
    {
        return own;
    }
    return KxTypes::SameName(typeName, "KX_IInterface") ? static_cast<const KX_IInterface*>(this) : nullptr;
}

const KX_TClass& KX_TObject::ClassObject() const
{
    return *static_cast<const KX_TClass*>(KX_DynamicInfo(nullptr));
}

const char* KX_TObject::ClassName() const
{
    return ClassObject().name;
}

bool KX_TObject::HasSuperclass(const char* typeName) const
{
    for (const KX_TClass* ancestor = &ClassObject(); ancestor != nullptr; ancestor = ancestor->Superclass())
    {
        if (KxTypes::SameName(typeName, ancestor->name))
        {
            return true;
        }
    }
    return false;
}

const void* KX_TObject::KX_Cast(const char* typeName) const
{
    return typeName != nullptr ? KX_DynamicInfo(typeName) : nullptr;
}

const void* KX_TObject::DynamicCast(const char* typeName, const char* file, std::int32_t line) const
{
    return KX_IInterface::DynamicCast(typeName, file, line);
}

void* KX_TObject::DynamicCast(const char* typeName, const char* file, std::int32_t line)
{
    return const_cast<void*>(KX_IInterface::DynamicCast(typeName, file, line));
}
