// Allocation of the bytes that an owning reference refers to.
#include "rasteroutput/DataRef.h"

#include <boost/checked_delete.hpp>

namespace RasterOutput
{
    void DataRefInstance::SetRange(Byte*, Byte*) {}

    void DataRefInstance::Allocate(const std::uint32_t& size)
    {
        // The size may be read through this very object; take it before anything changes. No parentheses after the
        // array: its bytes are written before they are read, so clearing them would be work for nothing.
        const std::uint32_t byteCount = size;
        boost::shared_ptr<unsigned char> fresh(
            new unsigned char[byteCount], boost::checked_array_deleter<unsigned char>());
        storage.swap(fresh);
        begin = storage.get();
        end = begin + byteCount;
    }
}
