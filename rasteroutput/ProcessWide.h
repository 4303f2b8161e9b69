// Objects that exist once per process. They stand apart from plain statics because a host's own statics may outlive them:
// a converter in a host's global pointer, for one, dies after every object that came into being while the host ran.
#pragma once

namespace RasterOutput
{
    /// The one T of the process: made by the first call, which is safe against a race between threads, and destroyed
    /// with the statics of the library. Null from then on. To be called from one source file per T.
    template <class T>
    T* ProcessWide()
    {
        static bool ended = false;
        struct Keeper
        {
            T object;
            ~Keeper() { ended = true; }
        };
        static Keeper keeper;
        return ended ? nullptr : &keeper.object;
    }
}
