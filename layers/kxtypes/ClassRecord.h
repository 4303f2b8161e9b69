// How every class of the library answers queries about itself: one class object each, made at first use, and the address
// of the object for the class's own name.
#pragma once

#include <kxtypes.h>

#include <cstring>

namespace KxTypes
{
    template <class Class>
    KX_TObject* NewOf()
    {
        return new Class;
    }

    /// The class object of `Class`, below `superclass`. The function-local pointer spares the look-up by name.
    template <class Class>
    KX_TClass* ClassObjectOf(const KX_TClass* superclass, KX_TClass::Factory factory = &NewOf<Class>)
    {
        static KX_TClass* const object =
            KX_TClass::GetClassObject(false, Class::KX_ClassName(), sizeof(Class), superclass, factory, nullptr);
        return object;
    }

    /// Null is the name of nothing.
    inline bool SameName(const char* typeName, const char* name)
    {
        return typeName != nullptr && std::strcmp(typeName, name) == 0;
    }

    /// The part of KX_DynamicInfo that each class answers itself: its class object for null, `self` for its own name.
    /// Null: its bases have to answer.
    template <class Class>
    const void* OwnDynamicInfo(const char* typeName, const void* self)
    {
        if (typeName == nullptr)
        {
            auto* const object = const_cast<KX_TClass*>(Class::KX_ClassObject());
            object->registered = 1;
            return object;
        }
        return SameName(typeName, Class::KX_ClassName()) ? self : nullptr;
    }
}
