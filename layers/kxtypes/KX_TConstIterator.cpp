// A walk that a host makes on its stack: it forwards to the container's own.
#include <kxtypes.h>

KX_TConstIterator::KX_TConstIterator() = default;
KX_TConstIterator::KX_TConstIterator(const KX_IIteratable& container)
    : walk(container.KX_NewWalk())
{
}
KX_TConstIterator::~KX_TConstIterator() = default;

bool KX_TConstIterator::IsDone() const
{
    return walk->IsDone();
}

const KX_IPackable& KX_TConstIterator::Key() const
{
    return walk->Key();
}

const KX_TAny& KX_TConstIterator::Value() const
{
    return walk->Value();
}

void KX_TConstIterator::Next()
{
    walk->Next();
}
