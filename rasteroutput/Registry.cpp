// Loki's small-object allocator, made in one place for all tables.
#include "rasteroutput/Registry.h"

namespace RasterOutput
{
    void MakeFunctorAllocator()
    {
        using Allocator = Loki::SmallValueObject<Loki::SingleThreaded>::ObjAllocatorSingleton;
        // Loki's own creation is not safe against a race between threads; that of a static is.
        static const Allocator& allocator = Allocator::Instance();
        static_cast<void>(allocator);
    }
}
