// The table of class objects. It is never destroyed: exceptions and values may still be queried while the process ends.
#include <kxtypes.h>

#include <functional>
#include <memory>
#include <mutex>
#include <string_view>
#include <utility>

namespace KxTypes
{
    namespace
    {
        struct ClassTable
        {
            std::mutex guard;
            std::map<std::string, std::unique_ptr<KX_TClass>, std::less<>> objects; // by name; never null
        };

        ClassTable& Table()
        {
            static auto* const table = new ClassTable;
            return *table;
        }
    }
}

KX_TClass::KX_TClass(const char* className, std::uint32_t theSize, const KX_TClass* theSuperclass, Factory theFactory)
    : registered(0)
    , name(nullptr)
    , ownName(className)
    , superclass(theSuperclass)
    , factory(theFactory)
    , size(theSize)
{
    name = ownName.c_str();
}

KX_TClass::~KX_TClass() = default;

KX_TClass* KX_TClass::GetClassObject(
    bool, const char* name, std::uint32_t size, const KX_TClass* superclass, Factory factory, bool (*)())
{
    KxTypes::ClassTable& table = KxTypes::Table();
    const std::lock_guard<std::mutex> lock(table.guard);
    // A query of a class that is known takes no memory: failures are asked for their class where there may be none.
    auto place = table.objects.find(std::string_view(name));
    if (place == table.objects.end())
    {
        std::unique_ptr<KX_TClass> object(new KX_TClass(name, size, superclass, factory));
        place = table.objects.emplace(name, std::move(object)).first;
    }
    return place->second.get();
}

const KX_TClass* KX_TClass::Superclass() const
{
    return superclass;
}

std::uint32_t KX_TClass::Size() const
{
    return size;
}

KX_TObject* KX_TClass::New() const
{
    return factory != nullptr ? factory() : nullptr;
}
