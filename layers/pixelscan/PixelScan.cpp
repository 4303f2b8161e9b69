// Plain loops: no conversion searches, so vectors would make none faster.
#include <PixelScan.h>

#include <algorithm>

namespace PixelScan
{
    const unsigned char* firstNonZero(const unsigned char* begin, const unsigned char* end)
    {
        return firstOtherThan(begin, end, 0);
    }

    const unsigned char* firstOtherThan(const unsigned char* begin, const unsigned char* end, unsigned char value)
    {
        return std::find_if(begin, end, [value](unsigned char byte) { return byte != value; });
    }
}
