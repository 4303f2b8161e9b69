// What a packable object can do once its class can pack and unpack it.
#include "kxtypes/PackBuffer.h"

#include <kxtypes.h>

KX_IPacking::~KX_IPacking() = default;
KX_IUnpacking::~KX_IUnpacking() = default;

KX_IPackable::KX_IPackable() = default;
KX_IPackable::KX_IPackable(const KX_IPackable&) = default;
KX_IPackable& KX_IPackable::operator=(const KX_IPackable&) = default;
KX_IPackable::~KX_IPackable() = default;

void KX_IPackable::KX_Move(void* target)
{
    // Both objects are of one class, so this interface lies at the same place in both.
    const auto place = reinterpret_cast<char*>(this) - static_cast<char*>(KX_Self());
    auto* const other = reinterpret_cast<KX_IPackable*>(static_cast<char*>(target) + place);
    const KxTypes::PackedPieces content = KxTypes::Packed(*this);
    KxTypes::PieceReader reader(content);
    other->KX_Unpack(reader);
}

KX_IPackable& KX_IPackable::operator=(KX_IUnpacking& unpacking)
{
    KX_Unpack(unpacking);
    return *this;
}

const KX_TClass& KX_IPackable::KX_PackClassObject() const
{
    return ClassObject();
}

std::uint32_t KX_IPackable::KX_PackTypeID() const
{
    // FNV-1a for 32 bits: Fowler, Noll, Vo; offset basis and prime as in RFC 9923.
    std::uint32_t hash = 2166136261u;
    for (const char* byte = KX_PackClassObject().name; *byte != '\0'; ++byte)
    {
        hash = (hash ^ static_cast<unsigned char>(*byte)) * 16777619u;
    }
    return hash;
}
