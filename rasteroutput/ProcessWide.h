// Objects that exist once per process. They stand apart from plain statics because a host's own statics and exit handlers
// may outlive those: a converter in a host's global pointer, for one, dies after whatever came into being while the host ran.
#pragma once

#include <new>

namespace RasterOutput
{
    /// The one T of the process: made by the first call, which is safe against a race between threads, tried again after
    /// one that threw, and there until the process has ended. To be called from one source file per T.
    template <class T>
    T& ProcessWide()
    {
        alignas(T) static unsigned char place[sizeof(T)];
        static T& object = *new (place) T; // never destroyed
        return object;
    }
}
