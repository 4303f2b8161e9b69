// Large pages for memory that is filled from front to back. A large page costs a fraction of the small ones in its place,
// save on a virtual machine whose host takes back what is free and hands it out again piece by piece: there it can cost
// several times as much. Which it is shows only in the time that a page takes.
#pragma once

#include <chrono>

namespace RasterOutput
{
    /// Makes large pages as long as they pay.
    class LargePages
    {
    public:
        /// Makes the Platform::LargePageSize bytes at `page`, so aligned and never touched, one large page that is ready
        /// to be filled. Leaves them as they are after a page that took too long, for a number of calls that grows with
        /// each such page.
        void Make(unsigned char* page) noexcept;

    private:
        /// What the small pages in place of a large one cost at the least, some 2 microseconds each.
        static constexpr std::chrono::microseconds TooLong{1000};
        static constexpr unsigned ShortestPause = 4;
        static constexpr unsigned LongestPause = 64;

        /// Calls that leave the memory as it is before the next that tries.
        unsigned callsToSkip = 0;
        /// Calls to skip after the next page that takes too long.
        unsigned pause = ShortestPause;
    };
}
