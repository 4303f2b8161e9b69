// The number classes and the boolean. A cast of one by its own name gives the address of the plain number, after the
// object's head; that is how readers get at it without a call.
#include "kxtypes/ClassRecord.h"

#include <kxtypes.h>

// NOLINTBEGIN(bugprone-macro-parentheses): the arguments are types
#define KX_DEFINE_NUMBER_CLASS(Class, Number)                                                                          \
    Class::Class(Number theValue)                                                                                      \
        : value(theValue)                                                                                              \
    {                                                                                                                  \
    }                                                                                                                  \
    Class::Class(const Class&) = default;                                                                              \
    Class& Class::operator=(const Class&) = default;                                                                   \
    Class::~Class() = default;                                                                                         \
    Number Class::Value() const                                                                                        \
    {                                                                                                                  \
        return value;                                                                                                  \
    }                                                                                                                  \
    const char* Class::KX_ClassName()                                                                                  \
    {                                                                                                                  \
        return #Class;                                                                                                 \
    }                                                                                                                  \
    const KX_TClass* Class::KX_ClassObject()                                                                           \
    {                                                                                                                  \
        return KxTypes::ClassObjectOf<Class>(KX_TObject::KX_ClassObject());                                            \
    }                                                                                                                  \
    void* Class::KX_Self()                                                                                             \
    {                                                                                                                  \
        return this;                                                                                                   \
    }                                                                                                                  \
    const void* Class::KX_DynamicInfo(const char* typeName) const                                                      \
    {                                                                                                                  \
        if (const void* const own = KxTypes::OwnDynamicInfo<Class>(typeName, &value))                                  \
        {                                                                                                              \
            return own;                                                                                                \
        }                                                                                                              \
        return KX_TObject::KX_DynamicInfo(typeName);                                                                   \
    }

KX_DEFINE_NUMBER_CLASS(KX_TDouble, double)
KX_DEFINE_NUMBER_CLASS(KX_TFloat, float)
KX_DEFINE_NUMBER_CLASS(KX_TInt32, std::int32_t)
KX_DEFINE_NUMBER_CLASS(KX_TUInt32, std::uint32_t)
KX_DEFINE_NUMBER_CLASS(KX_TBool, bool)
// NOLINTEND(bugprone-macro-parentheses)
