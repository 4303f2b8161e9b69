// The bytes of the file, handed on as they are.
#include "ppf/BinarySource.h"

#include <algorithm>
#include <cstring>

namespace ppf
{
    std::size_t BinarySource::Read(unsigned char* out, std::size_t count)
    {
        const std::size_t taken = std::min(count, m_data.bytes.size() - m_data.next);
        if (taken > 0)
        {
            std::memcpy(out, m_data.bytes.data() + m_data.next, taken);
        }
        m_data.next += taken;
        return taken;
    }
}
