#include "ppf/BinarySource.h"

#include <algorithm>
#include <cstring>

namespace Ppf
{
    std::size_t BinarySource::Read(unsigned char* out, std::size_t count)
    {
        const std::size_t taken = std::min(count, data.bytes.size() - data.next);
        if (taken > 0)
        {
            std::memcpy(out, data.bytes.data() + data.next, taken);
        }
        data.next += taken;
        return taken;
    }
}
