// Values by key, and the walk over them.
#include "kxtypes/ClassRecord.h"
#include "kxtypes/Failure.h"

#include <kxtypes.h>

namespace KxTypes
{
    namespace
    {
        /// A walk over the entries of a dictionary, in their order.
        template <class Entries>
        class DictWalk : public KX_TConstIterator
        {
        public:
            explicit DictWalk(const Entries& entries)
                : position(entries.begin())
                , end(entries.end())
            {
            }

            bool IsDone() const override { return position == end; }
            const KX_IPackable& Key() const override { return position->second.key; }
            const KX_TAny& Value() const override { return position->second.value; }
            void Next() override { ++position; }

        private:
            typename Entries::const_iterator position;
            typename Entries::const_iterator end;
        };
    }
}

KX_TDict::KX_TDict() = default;
KX_TDict::KX_TDict(const KX_TDict& other, std::uint32_t)
    : KX_IInterface(other)
    , KX_IIteratable(other)
    , KX_TObject(other)
    , entries(other.entries)
{
}
KX_TDict& KX_TDict::operator=(const KX_TDict&) = default;
KX_TDict::~KX_TDict() = default;

bool KX_TDict::HasKey(const char* key) const
{
    return entries.count(key) != 0;
}

KX_TAny& KX_TDict::At(const char* key)
{
    const auto entry = entries.find(key);
    if (entry == entries.end())
    {
        KxTypes::ThrowFailure(
            std::string("No entry \"") + key + "\" in the dictionary", __LINE__, "layers/kxtypes/KX_TDict.cpp");
    }
    return entry->second.value;
}

const KX_TString* KX_TDict::GetString(const char* key) const
{
    const auto entry = entries.find(key);
    if (entry == entries.end())
    {
        return nullptr;
    }
    const KX_TAny& value = entry->second.value;
    return static_cast<const KX_TString*>(
        value.DynamicCast(KX_TString::KX_ClassName(), "layers/kxtypes/KX_TDict.cpp", __LINE__));
}

void KX_TDict::Set(const char* key, const KX_TAny& value)
{
    Set(KX_TString(key), value);
}

void KX_TDict::Set(const KX_TString& key, const KX_TAny& value)
{
    entries.insert_or_assign(std::string(key.c_str(), key.Length()), Entry{key, value});
}

const char* KX_TDict::KX_ClassName()
{
    return "KX_TDict";
}

const KX_TClass* KX_TDict::KX_ClassObject()
{
    return KxTypes::ClassObjectOf<KX_TDict>(KX_TObject::KX_ClassObject());
}

void* KX_TDict::KX_Self()
{
    return this;
}

const void* KX_TDict::KX_DynamicInfo(const char* typeName) const
{
    if (const void* const own = KxTypes::OwnDynamicInfo<KX_TDict>(typeName, this))
    {
        return own;
    }
    if (KxTypes::SameName(typeName, "KX_IIteratable"))
    {
        return static_cast<const KX_IIteratable*>(this);
    }
    return KX_TObject::KX_DynamicInfo(typeName);
}

std::unique_ptr<KX_TConstIterator> KX_TDict::KX_NewWalk() const
{
    return std::make_unique<KxTypes::DictWalk<Entries>>(entries);
}
