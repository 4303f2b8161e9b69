// See LargePages.h.
#include "cip3output/LargePages.h"

#include "cip3output/Platform.h"

#include <algorithm>

namespace RasterOutput
{
    void LargePages::Make(unsigned char* page) noexcept
    {
        if (callsToSkip != 0)
        {
            --callsToSkip;
            return;
        }
        const auto begin = std::chrono::steady_clock::now();
        Platform::AdviseLargePage(page);
        // The first touch makes the system clear the page, and it goes from both ends towards the place that was touched:
        // the cache then holds what is wanted next. Touched at its end, the page is cleared from front to back, which is
        // faster still where memory comes from a host.
        page[Platform::LargePageSize - 1] = 0;
        if (std::chrono::steady_clock::now() - begin > TooLong)
        {
            callsToSkip = pause;
            pause = std::min(pause * 2, LongestPause);
        }
        else
        {
            pause = ShortestPause;
        }
    }
}
