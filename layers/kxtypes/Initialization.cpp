// What a host calls before anything else.
#include <kxtypes.h>

// Makes all class objects, so that no query has to, later, where memory may be short.
bool __KX_INITIALIZATION_FUNCTION_kxtypes__()
{
    try
    {
        for (const auto classObject :
             {&KX_TObject::KX_ClassObject, &KX_TString::KX_ClassObject, &KX_TURL::KX_ClassObject,
              &KX_TDouble::KX_ClassObject, &KX_TFloat::KX_ClassObject, &KX_TInt32::KX_ClassObject,
              &KX_TUInt32::KX_ClassObject, &KX_TBool::KX_ClassObject, &KX_TAny::KX_ClassObject,
              &KX_TArray::KX_ClassObject, &KX_TList::KX_ClassObject, &KX_TDict::KX_ClassObject,
              &KX_EException::KX_ClassObject})
        {
            classObject();
        }
    }
    catch (...)
    {
        return false;
    }
    return true;
}
